// SPDX-License-Identifier: Apache-2.0
// Compares the time to parse a shop list with the time of a bare XML parse of the same document.
//
// Usage: parser_bench [MAX_RATIO]
// Prints a line for each size and ends with 1 if the largest one has a ratio above MAX_RATIO.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <malloc.h>

#include <libxml/parser.h>

#include "common/ShopListParser.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int SIZES[] = {1000, 10000, 100000};
constexpr int ENTRIES_MEASURED = 1000000;  // for each size, over all its rounds
constexpr int FAN_OUT = 46;                // children of one entry: 46^3 is just under 100,000

// The code step of the child at POSITION.
std::string step(int position) {
    return {static_cast<char>('0' + position / 10), static_cast<char>('0' + position % 10)};
}

void appendEntry(std::string& list, const std::string& code) {
    list += "<sub_list name=\"Shop of the district " + code + "\" code=\"" + code + "\" />";
}

// A hierarchy of three levels with about COUNT entries, as wide as it is deep.
std::string makeDocument(int count) {
    std::string lists[3];
    int left = count;
    for (int a = 0; a < FAN_OUT && left > 0; ++a, --left) {
        appendEntry(lists[0], step(a));
        for (int b = 0; b < FAN_OUT && left > 1; ++b, --left) {
            appendEntry(lists[1], step(a) + step(b));
            for (int c = 0; c < FAN_OUT && left > 2; ++c, --left) {
                appendEntry(lists[2], step(a) + step(b) + step(c));
            }
        }
    }
    std::string document = "<rsp stat=\"ok\">";
    for (int level = 0; level < 3; ++level) {
        document += "<list level=\"" + std::to_string(level + 1) +
                    "\" name=\"Level\" is_fix=\"N\" is_sub=\"Y\">" + lists[level] + "</list>";
    }
    return document + "</rsp>";
}

struct Measure {
    double milliseconds = 1e9;  // of the fastest round
    size_t kilobytes = 0;       // what stays allocated while the result lives
};

template <typename Work>
void measureMemory(Measure& best, Work work) {
    const size_t before = mallinfo2().uordblks;
    const auto result = work();
    best.kilobytes = (mallinfo2().uordblks - before) / 1024;
}

template <typename Work>
void measureTime(Measure& best, Work work) {
    const auto start = Clock::now();
    const auto result = work();
    const std::chrono::duration<double, std::milli> elapsed = Clock::now() - start;
    best.milliseconds = std::min(best.milliseconds, elapsed.count());
}

struct FreeDocument {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
};

// Alternates between model and floor, so that other load on the machine affects both.
double compare(int entries) {
    const std::string document = makeDocument(entries);
    const auto parseBare = [&document] {
        return std::unique_ptr<xmlDoc, FreeDocument>(
            xmlParseDoc(reinterpret_cast<const xmlChar*>(document.c_str())));
    };
    const auto parseModel = [&document] {
        auto parser = std::make_unique<ZOLT::ShopListParser>();
        parser->parseShopListXML(document);
        return parser;
    };
    Measure floor;
    Measure model;
    measureMemory(floor, parseBare);
    measureMemory(model, parseModel);
    for (int round = 0; round < std::max(5, ENTRIES_MEASURED / entries); ++round) {
        measureTime(floor, parseBare);
        measureTime(model, parseModel);
    }
    const double ratio = model.milliseconds / floor.milliseconds;
    std::printf("%8d %10.2f %10.2f %7.2f %12zu %12zu\n", entries, floor.milliseconds,
                model.milliseconds, ratio, floor.kilobytes, model.kilobytes);
    return ratio;
}

}  // namespace

int main(int argc, char** argv) {
    std::printf("%8s %10s %10s %7s %12s %12s\n", "entries", "floor ms", "model ms", "ratio",
                "floor kB", "model kB");
    double ratio = 0;
    for (const int entries : SIZES) {
        ratio = compare(entries);
    }
    return argc > 1 && ratio > std::strtod(argv[1], nullptr) ? 1 : 0;
}
