// SPDX-License-Identifier: Apache-2.0
// Caches the last good version of the set's description and follows its file.
#include "host/description/Description.h"

#include <mutex>
#include <sstream>
#include <stdexcept>

#include <sys/stat.h>

#include "host/base/HostLog.h"
#include "host/base/SetFolder.h"

namespace host {

namespace {

// Identifies a version of the file.
struct Stamp {
    std::string path;
    struct stat status;
    bool exists;
};

Stamp stampOf(const std::string& path) {
    Stamp stamp{path, {}, false};
    stamp.exists = stat(path.c_str(), &stamp.status) == 0;
    return stamp;
}

bool sameTime(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool same(const Stamp& one, const Stamp& other) {
    return one.path == other.path && one.exists == other.exists &&
           (!one.exists ||
            (one.status.st_dev == other.status.st_dev && one.status.st_ino == other.status.st_ino &&
             one.status.st_size == other.status.st_size &&
             sameTime(one.status.st_mtim, other.status.st_mtim) &&
             sameTime(one.status.st_ctim, other.status.st_ctim)));
}

// The last version that was read. Never destroyed, since threads may use it until the process ends.
struct Cache {
    std::mutex guard;  // guards the members below
    Stamp stamp{"", {}, false};
    bool stale = true;
    DescriptionValues values;
};

Cache& cache() {
    static auto* only = new Cache;
    return *only;
}

void read(Cache* kept, const Stamp& now) {
    const bool otherFile = kept->stamp.path != now.path;
    kept->stamp = now;
    kept->stale = false;
    if (otherFile) {
        kept->values = DescriptionValues();
    }
    try {
        kept->values = readDescription(now.path);
    } catch (const std::runtime_error& failure) {
        logWarning("The description of the set cannot be read, its values stay as they were: " +
                   std::string(failure.what()));
        return;
    }
    for (const std::string& remark : kept->values.remarks) {
        logWarning(remark);
    }
}

template <typename Question>
auto ask(Question question) {
    Cache& kept = cache();
    const Stamp now = stampOf(SetFolder::description());
    const std::lock_guard<std::mutex> lock(kept.guard);
    if (kept.stale || !same(kept.stamp, now)) {
        read(&kept, now);
    }
    return question(kept.values);
}

}  // namespace

DescriptionValues Description::values() {
    return ask([](const DescriptionValues& values) { return values; });
}

std::string Description::text(Field field) {
    return ask([field](const DescriptionValues& values) { return values.text(field); });
}

int Description::number(Field field) {
    return parseNumber(text(field)).value_or(0);
}

bool Description::flag(Field field) {
    return text(field) == "true";
}

std::vector<std::string> Description::list(Field field) {
    std::vector<std::string> entries;
    std::istringstream stream(text(field));
    std::string entry;
    while (std::getline(stream, entry, ';')) {
        if (!entry.empty()) {
            entries.push_back(entry);
        }
    }
    return entries;
}

bool Description::isGiven(Field field) {
    return ask([field](const DescriptionValues& values) {
        return values.given[static_cast<std::size_t>(field)];
    });
}

void Description::write(Field field, const std::string& value) {
    writeDescription(SetFolder::description(), field, value);
}

void Description::reload() {
    Cache& kept = cache();
    const std::lock_guard<std::mutex> lock(kept.guard);
    kept.stale = true;
}

}  // namespace host
