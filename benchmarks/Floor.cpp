#include "benchmarks/Floor.h"

#include "benchmarks/Bench.h"

#include <QFile>

#include <array>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox::bench {

int RunFloor(const QString& folder) {
    const std::string prefix = QFile::encodeName(folder).toStdString();
    std::vector<std::string> names;
    DIR* stream = ::opendir(prefix.c_str());
    Require(stream != nullptr, "the folder cannot be opened");
    while (const dirent* entry = ::readdir(stream)) {
        if (entry->d_type != DT_DIR) {
            names.emplace_back(entry->d_name);
        }
    }
    ::closedir(stream);
    std::array<char, 4096> buffer{};
    for (const std::string& name : names) {
        const std::string path = prefix + name;
        struct stat status {};
        Require(::stat(path.c_str(), &status) == 0, "a file cannot be looked at");
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        Require(file >= 0, "a file cannot be opened");
        Require(::read(file, buffer.data(), buffer.size()) >= 0, "a file cannot be read");
        ::close(file);
    }
    return static_cast<int>(names.size());
}

bool DropFileCache() {
    ::sync();
    const int file = ::open("/proc/sys/vm/drop_caches", O_WRONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    const bool dropped = ::write(file, "3", 1) == 1;
    ::close(file);
    return dropped;
}

} // namespace quellbox::bench
