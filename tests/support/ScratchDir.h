#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace qeltest {

// CTest runs every test case in its own process, several at a time; files
// named only after the test would be written by two processes at once. Each
// process gets its own folder under the test temporary directory.
inline const std::string& scratchDir() {
    static const std::string dir = [] {
        std::string path = ::testing::TempDir() + "qeldm_" + std::to_string(::getpid()) + "/";
        ::mkdir(path.c_str(), 0700);
        return path;
    }();
    return dir;
}

}  // namespace qeltest
