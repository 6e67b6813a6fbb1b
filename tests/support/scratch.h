#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>

#include "common/console.h"

namespace qx9::test {

// A fresh directory of its own under the temporary directory, removed with everything in it.
class TempDir {
public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "qx9-test-XXXXXX").string();
        if (!mkdtemp(pattern.data())) ADD_FAILURE() << "mkdtemp failed for " << pattern;
        path_ = pattern;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// Every byte of a file ("" when it cannot be read).
inline std::string fileBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// What the program prints on its diagnostic console while this lives.
class ConsoleCapture {
public:
    ConsoleCapture() : previous_(setConsoleStream(&out_)) {}
    ~ConsoleCapture() { setConsoleStream(previous_); }
    std::string text() const { return out_.str(); }
    void clear() { out_.str({}); }

private:
    std::ostringstream out_;
    std::ostream* previous_;
};

// An environment variable set (or, with nullopt, unset) while this lives.
class EnvOverride {
public:
    EnvOverride(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* old = std::getenv(name)) previous_ = old;
        set(value);
    }
    ~EnvOverride() { set(previous_); }

private:
    void set(const std::optional<std::string>& value) {
        value ? setenv(name_.c_str(), value->c_str(), 1) : unsetenv(name_.c_str());
    }
    std::string name_;
    std::optional<std::string> previous_;
};

// A short wait for another program's lock, for the tests that hold one.
inline EnvOverride shortLockWait() { return EnvOverride("QX9_LOCK_WAIT_MS", "50"); }

}  // namespace qx9::test
