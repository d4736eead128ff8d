// SPDX-License-Identifier: Apache-2.0
// Where the daemon finds and keeps the files of one set.
#include "daemon/SetFolder.h"

#include <glib.h>

#include "daemon/Options.h"
#include "daemon/Xml.h"

namespace standin {
namespace {

constexpr const char* REGISTRATION_FILE_KEY = "ShopRegistrationFilePath";

bool isFile(const std::string& path) {
    return g_file_test(path.c_str(), G_FILE_TEST_IS_REGULAR) != FALSE;
}

std::string folderOf(const std::string& path) {
    gchar* name = g_path_get_dirname(path.c_str());
    std::string folder = name;
    g_free(name);
    return folder;
}

// The value of KEY in the program's configuration: the last item of that name, as the program reads
// it.
std::string configuredValue(const std::string& path, const char* key) {
    const XmlDocument document(readText(path));
    if (document.root() == nullptr) {
        throw UsageError(path + " is not well-formed XML");
    }
    std::string value;
    for (xmlNode* item : elementsOf(document.root())) {
        if (attribute(item, "name") == key) {
            value = content(item);
        }
    }
    if (value.empty()) {
        throw UsageError(path + " has no " + key);
    }
    return value;
}

std::string chooseScenario(const std::string& folder, const std::string& asked) {
    if (!asked.empty()) {
        if (!isFile(asked)) {
            throw UsageError("no such scenario: " + asked);
        }
        return absolutePath(asked, "");
    }
    const std::string own = absolutePath("scenario.ini", folder);
    return isFile(own) ? own : "";
}

}  // namespace

std::string absolutePath(const std::string& path, const std::string& base) {
    gchar* name = g_canonicalize_filename(path.c_str(), base.empty() ? nullptr : base.c_str());
    std::string absolute = name;
    g_free(name);
    return absolute;
}

SetFolder openSetFolder(const std::string& folder, const std::string& scenario) {
    SetFolder set;
    set.folder = absolutePath(folder, "");
    if (g_file_test(set.folder.c_str(), G_FILE_TEST_IS_DIR) == FALSE) {
        throw UsageError("no such folder: " + folder);
    }
    const std::string config = absolutePath("config.xml", set.folder);
    if (!isFile(config)) {
        throw UsageError("no configuration: " + config);
    }
    set.registrationFile = absolutePath(configuredValue(config, REGISTRATION_FILE_KEY), set.folder);
    set.documentFile = absolutePath("registered.xml", folderOf(set.registrationFile));
    set.documentCopy = absolutePath("data/registered.xml", set.folder);
    set.journalFile = absolutePath("daemon.log", set.folder);
    set.scenarioFile = chooseScenario(set.folder, scenario);
    return set;
}

}  // namespace standin
