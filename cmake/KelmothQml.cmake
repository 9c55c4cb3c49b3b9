# kelmoth_qml_module(NAME URI … SOURCES … QML_FILES … LINKS …): one room of QML and C++ types as a static
# library. Its types are registered by the function qml_register_types_<URI with underscores>(), which somebody
# must call: what nobody calls the linker drops. LINKS are public.
function(kelmoth_qml_module name)
    cmake_parse_arguments(ARG "" "URI" "SOURCES;QML_FILES;LINKS" ${ARGN})
    string(REPLACE . / path ${ARG_URI})
    qt_add_library(${name} STATIC)
    qt_add_qml_module(${name}
        URI ${ARG_URI}
        VERSION 1.0
        RESOURCE_PREFIX /qt/qml
        NO_PLUGIN
        OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml/${path}
        IMPORT_PATH ${PROJECT_BINARY_DIR}/qml
        DEPENDENCIES QtQuick
        SOURCES ${ARG_SOURCES}
        QML_FILES ${ARG_QML_FILES})
    target_link_libraries(${name} PUBLIC kelmoth_options Qt6::Qml Qt6::Quick ${ARG_LINKS})
    # What Qt's own tools write is not held to our warnings. A file of it for each view is a few lines under many
    # headers: they are compiled together.
    get_target_property(sources ${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "^${CMAKE_CURRENT_BINARY_DIR}/.*[.]cpp$")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
    set(views ${sources})
    list(FILTER views INCLUDE REGEX "_qml[.]cpp$")
    set_source_files_properties(${views} PROPERTIES HEADER_FILE_ONLY ON)
    list(TRANSFORM views REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
    string(CONCAT includes ${includes})
    set(together ${CMAKE_CURRENT_BINARY_DIR}/${name}_qml.cpp)
    file(CONFIGURE OUTPUT ${together} CONTENT "${includes}" @ONLY)
    set_source_files_properties(${together} PROPERTIES COMPILE_OPTIONS -w SKIP_AUTOGEN ON OBJECT_DEPENDS "${views}")
    target_sources(${name} PRIVATE ${together})
endfunction()
