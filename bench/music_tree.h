// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a tree of 100,000 files for the benchmarks of searches, and runs `find`, with which
// these searches are compared.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace sonarith::bench {

inline constexpr int treeFolders = 5000;
inline constexpr int filesPerFolder = 20;
inline constexpr int treeFiles = treeFolders * filesPerFolder;
/// Every second file is a WAV file, the others are MP3 files.
inline constexpr int treeWavs = treeFiles / 2;

/// Creates a tree like a user's music: 100 artist folders with 49 album folders each. Each artist
/// folder and each album folder contains ten WAV and ten MP3 files.
inline void makeMusicTree(const std::filesystem::path& root) {
    constexpr int artists = 100;
    constexpr int foldersPerArtist = treeFolders / artists;
    for (int artist = 0; artist < artists; ++artist) {
        const std::filesystem::path top = root / ("Artist " + std::to_string(artist));
        for (int album = 0; album < foldersPerArtist; ++album) {
            const auto folder = album == 0 ? top : top / ("Album " + std::to_string(album));
            std::filesystem::create_directories(folder);
            for (int file = 0; file < filesPerFolder; ++file) {
                const char* ending = file % 2 == 0 ? ".wav" : ".MP3";
                std::ofstream(folder / ("Track " + std::to_string(file) + ending));
            }
        }
    }
}

inline double millisecondsOf(const std::function<void()>& step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

/// Runs `find -iname "*.wav"` and writes its output to a file.
inline void runFind(const std::string& root, const std::string& output) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::vector<std::string> words{"find", root, "-iname", "*.wav"};
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    if (posix_spawnp(&child, "find", &actions, nullptr, arguments.data(), environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "find could not be run\n");
        std::exit(EXIT_FAILURE);
    }
    posix_spawn_file_actions_destroy(&actions);
}

inline int linesOf(const std::string& path) {
    std::ifstream in(path);
    return static_cast<int>(
        std::count(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>(), '\n'));
}

} // namespace sonarith::bench
