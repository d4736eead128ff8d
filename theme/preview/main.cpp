// SPDX-License-Identifier: Apache-2.0
// Draws the program's screens with a theme file, without a display, as one picture each.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>

#include <libintl.h>
#include <locale.h>
#include <stdlib.h>

#include <Elementary.h>

#include "Scenes.h"

namespace {

using ZOLT::Preview::Look;
using ZOLT::Preview::Scene;
using ZOLT::Preview::Stage;

struct Request {
    Look look;
    std::string catalogues;
    std::string out = ".";
    std::vector<std::string> keys;
    std::vector<std::string> scenes;
};

std::vector<std::string> split(const std::string& list) {
    std::vector<std::string> items;
    std::istringstream stream(list);
    for (std::string item; std::getline(stream, item, ',');) {
        items.push_back(item);
    }
    return items;
}

Request parse(int argc, char** argv) {
    Request request;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&] { return std::string(i + 1 < argc ? argv[++i] : ""); };
        if (word == "--theme") {
            request.look.theme = value();
        } else if (word == "--catalogues") {
            request.catalogues = value();
        } else if (word == "--out") {
            request.out = value();
        } else if (word == "--size") {
            std::istringstream size(value());
            char by = 'x';
            size >> request.look.width >> by >> request.look.height;
        } else if (word == "--keys") {
            request.keys = split(value());
        } else if (word == "--rtl") {
            request.look.mirrored = true;
        } else if (word == "--enlarge") {
            request.look.enlarge = true;
        } else if (word == "--contrast") {
            request.look.contrast = true;
        } else {
            request.scenes.push_back(word);
        }
    }
    return request;
}

int draw(const Request& request, const std::string& name) {
    const auto found = ZOLT::Preview::scenes().find(name);
    if (found == ZOLT::Preview::scenes().end()) {
        std::cerr << "no scene is called " << name << "\n";
        return 2;
    }
    const Scene& scene = found->second;
    Stage stage(request.look, ZOLT::Preview::groupOf(scene, request.look.enlarge));
    scene.set(stage);
    stage.open();
    for (const std::string& key : request.keys) {
        stage.press(key);
        Stage::settle(0.1);
    }
    Stage::settle(0.7);
    const std::string file = request.out + "/" + name + ".png";
    if (!stage.save(file)) {
        std::cerr << "cannot write " << file << "\n";
        return 1;
    }
    return 0;
}

int run(const Request& request) {
    elm_config_scale_set(request.look.height / 1080.0);
    elm_config_mirrored_set(request.look.mirrored);
    elm_config_icon_theme_set("_Elementary_Icon_Theme");
    elm_theme_overlay_add(nullptr, request.look.theme.c_str());
    std::vector<std::string> scenes = request.scenes;
    if (scenes.empty()) {
        for (const auto& [name, scene] : ZOLT::Preview::scenes()) {
            scenes.push_back(name);
        }
    }
    int status = 0;
    for (const std::string& name : scenes) {
        status = std::max(status, draw(request, name));
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const Request request = parse(argc, argv);
    if (request.look.theme.empty() || request.look.width <= 0 || request.look.height <= 0) {
        std::cerr << "usage: theme-preview --theme FILE [--catalogues DIR] [--out DIR] [--size WxH]"
                     " [--keys KEY,...] [--rtl] [--enlarge] [--contrast] [SCENE...]\n";
        return 2;
    }
    setenv("ELM_ENGINE", "buffer", 1);
    elm_init(argc, argv);
    setlocale(LC_ALL, "C.UTF-8");
    if (!request.catalogues.empty()) {
        bindtextdomain("ZOLT", request.catalogues.c_str());
    }
    const int status = run(request);
    elm_shutdown();
    return status;
}
