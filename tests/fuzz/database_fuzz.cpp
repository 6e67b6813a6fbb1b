// libFuzzer target: a database file of arbitrary bytes (the corpus holds real ones to mutate).
// Opening it, reading everything the first connection reads and sending it to a virtual QX9
// must never stop the program, whatever the file holds.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "common/console.h"
#include "virtual/virtual_qx9.h"
#include "layout/key_maps.h"
#include "ops/configuration.h"
#include "ops/lighting.h"
#include "ops/macros.h"

namespace {

class NoPause final : public qx9::Pacer {
public:
    void pause(std::chrono::microseconds) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::ostringstream quiet;
    static const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("qx9-fuzz-" + std::to_string(::getpid()) + ".sqlite3");
    qx9::setConsoleStream(&quiet);
    quiet.str({});
    qx9::installKB108KMaps();
    for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(file.string() + suffix);
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    {
        qx9::DeviceSQLite db = qx9::DeviceSQLite::atPath(file);
        if (db.readable()) {
            auto keyboard = std::make_shared<qx9::VirtualQX9>();
            NoPause noPause;
            qx9::DeviceComm comm(keyboard, &noPause);
            qx9::DirectSender sender(comm, db);
            const qx9::ops::Target target{db, &sender};
            qx9::ops::send(target, qx9::ops::wholeConfiguration(db));
            qx9::ops::sendMacros(target);
            qx9::ops::selectedEffect(db);
            qx9::ops::sendLightMode(target, 1, 1);
            std::string document;
            (void)qx9::ops::exportConfiguration(db, document);
        }
    }
    return 0;
}
