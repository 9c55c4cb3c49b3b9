#include "Core/Device/ButtonAction.h"
#include "Core/Device/MouseButton.h"
#include "UI/Components/SymbolLook.h"
#include "UI/Components/SymbolTable.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>

namespace kelmoth {

static QImage paint(std::string_view name, bool bold = false, double height = 32)
{
    SymbolLook look;
    look.side = height;
    look.name = QString::fromUtf8(name.data(), qsizetype(name.size()));
    look.fill = {{0.0, Qt::black}};
    look.bold = bold;
    return paintSymbol(look, 1).image;
}

/// Opaque pixels' worth.
static double ink(const QImage &image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += qAlpha(image.pixel(x, y)) / 255.0;
        }
    }
    return sum;
}

/// The symbols that views and models name, by the file that does: every text with dots between its words, and
/// single words that are given as an icon.
static std::map<std::string, std::string> namedInSources()
{
    static const std::regex mention(
        R"re("([a-z]+(\.[a-z0-9]+)+)"|\b(icon|symbol|Symbol)\b[^"\n]{0,12}"([a-z]+)")re");
    std::map<std::string, std::string> names;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(KELMOTH_SOURCES "/UI")) {
        const auto file = entry.path().filename().string();
        if (!entry.is_regular_file() || file == "SymbolTable.cpp" || file == "CMakeLists.txt") {
            continue;
        }
        std::ifstream text(entry.path());
        const std::string content{std::istreambuf_iterator(text), {}};
        for (std::sregex_iterator found(content.begin(), content.end(), mention), end; found != end;
             ++found) {
            names.emplace((*found)[1].matched ? (*found)[1].str() : (*found)[4].str(), file);
        }
    }
    return names;
}

TEST(Symbols, EveryNameInUseHasAnIcon)
{
    auto names = namedInSources();
    for (const MouseButton button : allCases<MouseButton>()) {
        names.emplace(icon(button), "MouseButton");
    }
    for (const ButtonActionChoice &choice : buttonActionChoices(true)) {
        names.emplace(choice.icon, "ButtonAction");
    }
    ASSERT_GT(names.size(), 20U);
    for (const auto &[name, user] : names) {
        EXPECT_NE(symbolNamed(name), nullptr) << name << ", used by " << user;
    }
}

TEST(Symbols, EveryIconExistsAndIsUnique)
{
    std::map<QByteArray, std::string_view> pictures;
    for (const SymbolIcon &symbol : symbolTable()) {
        const QImage image = paint(symbol.name);
        EXPECT_GT(ink(image), 40) << symbol.name;
        const double bolder = ink(paint(symbol.name, true)) - ink(image);
        EXPECT_GT(symbol.kind == SymbolIcon::cutOut ? -bolder : bolder, 0) << symbol.name;
        const QByteArray bytes(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
        const auto [known, isNew] = pictures.emplace(bytes, symbol.name);
        EXPECT_TRUE(isNew) << symbol.name << " looks like " << known->second;
    }
    EXPECT_EQ(ink(paint("no.such.symbol")), 0);
}

TEST(Symbols, ABatteryShowsItsLevelOnWholePixelsOfAPlainScreen)
{
    double last = 0;
    for (const char *name : {"battery.0", "battery.25", "battery.50", "battery.75", "battery.100"}) {
        const QImage image = paint(name, false, 12);
        EXPECT_EQ(image.width(), 15 + 4) << "two pixels of margin on either side";
        EXPECT_GT(ink(image) - last, 8) << name;
        last = ink(image);
        for (int y = 6; y < 10; ++y) { // the line of the left end, and the gap beside it
            EXPECT_GT(qAlpha(image.pixel(2, y)), 240) << name;
            EXPECT_LT(qAlpha(image.pixel(3, y)), 15) << name;
        }
    }
}

} // namespace kelmoth
