# Fonts of the tests' own, so that the machine's never change a result. Each family has a directory below
# `fonts` of the build's: its files, those of the families that have what it lacks, and a fonts.conf that knows
# no others and hints as desktops do: without a style, full hinting puts each letter on a pixel of its own.
find_program(KELMOTH_FC_LIST fc-list REQUIRED)
find_program(KELMOTH_FC_CACHE fc-cache REQUIRED)

# kelmoth_test_font(FAMILY FALLBACK...)
function(kelmoth_test_font family)
    set(directory "${CMAKE_BINARY_DIR}/fonts/${family}")
    file(REMOVE_RECURSE "${directory}")
    file(MAKE_DIRECTORY "${directory}/files")
    set(order "")
    foreach(name IN ITEMS "${family}" ${ARGN})
        execute_process(COMMAND ${KELMOTH_FC_LIST} --format "%{file}\n" ":family=${name}:slant=0:width=100"
            OUTPUT_VARIABLE files OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        if(files STREQUAL "")
            message(FATAL_ERROR "The tests need the font ${name}; script/bootstrap --for test installs it")
        endif()
        string(REPLACE "\n" ";" files "${files}")
        foreach(file IN LISTS files)
            get_filename_component(link "${file}" NAME)
            file(CREATE_LINK "${file}" "${directory}/files/${link}" SYMBOLIC)
        endforeach()
        string(APPEND order "<string>${name}</string>")
    endforeach()
    file(WRITE "${directory}/fonts.conf" "<?xml version=\"1.0\"?>
<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">
<fontconfig>
  <dir>${directory}/files</dir>
  <cachedir>${directory}/cache</cachedir>
  <match><edit name=\"family\" mode=\"append_last\" binding=\"strong\">${order}</edit></match>
  <match><edit name=\"hintstyle\"><const>hintslight</const></edit></match>
</fontconfig>
")
    # The confined program may read the cache, but not fill it.
    execute_process(COMMAND ${CMAKE_COMMAND} -E env "FONTCONFIG_FILE=${directory}/fonts.conf" ${KELMOTH_FC_CACHE}
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()
