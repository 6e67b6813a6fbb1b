#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "cli/ctl.h"
#include "common/console.h"
#include "hid/virtual_qx9.h"

namespace qx9::test {

// qx9ctl run in-process on a database and a virtual keyboard file in a directory of its own.
class CtlTest : public ::testing::Test {
protected:
    CtlTest()
        : dir_(std::filesystem::temp_directory_path() /
               ("qx9ctl-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
        std::filesystem::create_directories(dir_);
        // The tests read the database themselves between runs: keep its console lines here.
        previousConsole_ = setConsoleStream(&console_);
    }
    ~CtlTest() override {
        setConsoleStream(previousConsole_);
        std::filesystem::remove_all(dir_);
    }

    // qx9ctl --db DIR/db --device virtual:DIR/keyboardFile [--wire -] ARGS…
    int runOn(const std::string& db, const std::string& keyboardFile, std::vector<std::string> args,
              bool withWire = false) {
        std::vector<std::string> full = {"--db", (dir_ / db).string(), "--device",
                                         "virtual:" + (dir_ / keyboardFile).string()};
        if (withWire) full.insert(full.end(), {"--wire", "-"});
        full.insert(full.end(), args.begin(), args.end());
        out_.str("");
        err_.str("");
        return ctl::run(full, out_, err_);
    }
    int run(std::vector<std::string> args, bool withWire = false) {
        return runOn("db.sqlite3", "kb.json", std::move(args), withWire);
    }
    // What the virtual keyboard of `keyboardFile` holds.
    VirtualQX9Memory keyboard(const std::string& keyboardFile = "kb.json") {
        VirtualQX9 kb;
        std::string error;
        kb.loadState((dir_ / keyboardFile).string(), error);
        return kb.memory();
    }

    std::filesystem::path dir_;
    std::ostringstream out_, err_;

private:
    std::ostringstream console_;
    std::ostream* previousConsole_ = nullptr;
};

}  // namespace qx9::test
