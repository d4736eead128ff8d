// SPDX-License-Identifier: Apache-2.0
// Reads compiled message catalogues and writes made-up ones.
#include "look/Catalogue.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "support/TestSupport.h"

namespace look {

namespace {

constexpr std::uint32_t MAGIC = 0x950412de;
constexpr char LINE_BREAK[] = "<br/>";
constexpr char BODY_FONT[] = "NotoSans:style=Regular";

std::string fileOf(const std::string& folder, const std::string& language) {
    return folder + "/" + language + "/LC_MESSAGES/ZOLT.mo";
}

std::uint32_t numberAt(const std::string& data, std::size_t place) {
    if (place + sizeof(std::uint32_t) > data.size()) {
        throw std::runtime_error("a catalogue ends too early");
    }
    std::uint32_t number = 0;
    std::memcpy(&number, &data[place], sizeof(number));
    return number;
}

std::string textAt(const std::string& data, std::size_t entry) {
    const std::size_t length = numberAt(data, entry);
    const std::size_t place = numberAt(data, entry + 4);
    if (place + length > data.size()) {
        throw std::runtime_error("a catalogue ends too early");
    }
    return data.substr(place, length);
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char one : text) {
        if (one == '\n') {
            result += "\\n";
            continue;
        }
        if (one == '"' || one == '\\') {
            result += '\\';
        }
        result += one;
    }
    return result + "\"";
}

void write(const std::string& folder, const std::string& language, const Messages& messages) {
    std::string source = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
    for (const auto& [id, text] : messages) {
        source += "msgid " + quoted(id) + "\nmsgstr " + quoted(text) + "\n";
    }
    const std::string output = fileOf(folder, language);
    support::writeFile(folder + "/" + language + ".po", source);
    support::writeFile(output, "");
    const auto made =
        support::runProgram({"msgfmt", "-o", output, folder + "/" + language + ".po"});
    if (made.status != 0) {
        throw std::runtime_error("msgfmt: " + made.errors);
    }
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

std::size_t lettersOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char one) {
        return (static_cast<unsigned char>(one) & 0xC0U) != 0x80U;
    }));
}

std::string accented(const std::string& text) {
    static const std::map<char, std::string> letters = {
        {'a', "å"}, {'e', "é"}, {'i', "î"}, {'o', "ö"}, {'u', "û"}, {'n', "ñ"}, {'s', "š"},
        {'c', "ç"}, {'y', "ý"}, {'A', "Å"}, {'E', "É"}, {'I', "Î"}, {'O', "Ö"}, {'U', "Û"},
        {'N', "Ñ"}, {'S', "Š"}, {'C', "Ç"}, {'R', "Ŕ"}, {'P', "Ƥ"}, {'t', "ţ"}};
    std::string result;
    for (const char one : text) {
        const auto found = letters.find(one);
        result += found != letters.end() ? found->second : std::string(1, one);
    }
    return result;
}

}  // namespace

std::vector<std::string> Catalogue::languagesIn(const std::string& folder) {
    std::vector<std::string> languages;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (support::fileExists(fileOf(folder, name))) {
            languages.push_back(name);
        }
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

Messages Catalogue::read(const std::string& folder, const std::string& language) {
    const std::string data = support::readFile(fileOf(folder, language));
    if (numberAt(data, 0) != MAGIC) {
        throw std::runtime_error("not a catalogue: " + fileOf(folder, language));
    }
    const std::size_t count = numberAt(data, 8);
    const std::size_t ids = numberAt(data, 12);
    const std::size_t texts = numberAt(data, 16);
    Messages messages;
    for (std::size_t entry = 0; entry < count; ++entry) {
        const std::string id = textAt(data, ids + entry * 8);
        if (!id.empty()) {
            messages[id] = textAt(data, texts + entry * 8);
        }
    }
    return messages;
}

const std::vector<std::string>& Catalogue::madeUp() {
    static const std::vector<std::string> languages = {"longest", "grown", lacking()};
    return languages;
}

void Catalogue::makeUp(const std::string& folder, const std::string& catalogues,
                       GlyphMeter& glyphs) {
    Messages longest;
    std::map<std::string, int> widths;
    for (const std::string& language : languagesIn(catalogues)) {
        for (const auto& [id, text] : read(catalogues, language)) {
            const int width = glyphs.widthOf(BODY_FONT, replaced(text, LINE_BREAK, " "));
            if (width > widths[id]) {
                widths[id] = width;
                longest[id] = text;
            }
        }
    }
    const Messages english = read(catalogues, "en");
    Messages longer = english;
    for (auto& [id, text] : longer) {
        // Never shown.
        text = id == "ZOLT_CONTENT_SPACER" ? text : grown(text);
    }
    Messages missing = english;
    missing.erase("SID_CANCEL");
    missing["TV_SID_NEW_REGISTRATION"] = "";
    write(folder, "longest", longest);
    write(folder, "grown", longer);
    write(folder, lacking(), missing);
}

std::string Catalogue::grown(const std::string& text) {
    static const char* const MORE[] = {" ", "ö", "m", "å", " ", "l", "ŕ", "é", "ñ",
                                       " ", "v", "î", "š", "ţ", "å", " ", "ñ", "û"};
    const double letters = static_cast<double>(lettersOf(replaced(text, LINE_BREAK, " ")));
    const double growth = letters <= 10 ? 3.0 : letters <= 30 ? 1.8 : 1.4;
    const auto length = static_cast<std::size_t>(std::ceil(letters * growth));
    std::string result = "[";
    for (std::size_t start = 0; start <= text.size();) {
        const auto end = std::min(text.find(LINE_BREAK, start), text.size());
        result += accented(text.substr(start, end - start));
        if (end < text.size()) {
            result += LINE_BREAK;
        }
        start = end + std::strlen(LINE_BREAK);
    }
    for (std::size_t sign = 0; lettersOf(replaced(result, LINE_BREAK, " ")) + 1 < length; ++sign) {
        result += MORE[sign % std::size(MORE)];
    }
    return result + "]";
}

}  // namespace look
