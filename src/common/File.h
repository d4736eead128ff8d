// SPDX-License-Identifier: Apache-2.0
// One file path: save a text to it, test it, remove it.
#pragma once

#include <string>

namespace ZOLT {

// No operation throws on a failure of the file.
class File {
  public:
    explicit File(std::string path);
    virtual ~File() = default;

    // True if the file, or the empty directory, was there and is gone.
    virtual bool remove();

    // Makes the file or replaces its content. False, with a line in the log, if it cannot be opened
    // or if writing fails; a failure when the stream is closed goes unnoticed.
    virtual bool save(std::string data);

    // True if the path can be opened for reading, also for a directory.
    virtual bool exists();
    virtual std::string getPath();

    static bool exists(std::string path);

  private:
    std::string m_path;
};

}  // namespace ZOLT
