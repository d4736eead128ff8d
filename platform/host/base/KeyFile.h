// SPDX-License-Identifier: Apache-2.0
// Key files that several processes read and rewrite.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <glib.h>

namespace host {

struct KeyFileRelease {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
using KeyFilePtr = std::unique_ptr<GKeyFile, KeyFileRelease>;

// Reads PATH with its comments. An absent file is an empty one. Throws std::runtime_error with the
// reason when the file cannot be read or parsed.
KeyFilePtr readKeyFile(const std::string& path);

// What happens to a file that cannot be read or parsed: KEEP never loses what a person wrote
// because of a mistake in it; REPLACE lets a file that only programs write start empty.
enum class BrokenFile { KEEP, REPLACE };

// Reads PATH, lets CHANGE alter it and replaces the file in one step, so that no reader ever sees
// half of it. A lock file beside it serializes writers. Throws std::runtime_error with the reason;
// PATH is then unchanged.
void changeKeyFile(const std::string& path, BrokenFile broken,
                   const std::function<void(GKeyFile*)>& change);

}  // namespace host
