// Models of virtual BMCs. One that is taken makes a machine that can be described.
#include "target.h"
#include "virtual-bmc/virtual_bmc.h"

#include <nlohmann/json.hpp>

namespace {

class Folder {
public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "ph-fuzz-XXXXXX").string();
        require(mkdtemp(name.data()) != nullptr, "there is room for a machine");
        path_ = name;
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path file() const { return path_ / "bmc.state"; }

private:
    std::filesystem::path path_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        vbmc::createFromText(folder.file(), text, "model", vbmc::Existing::Replace);
        require(vbmc::VirtualBmc(folder.file()).describe().is_object(), "a machine can be described");
    } catch (const vbmc::Error& error) {
        require(std::string_view(error.what()).starts_with("model"), "an error names its model");
    }
    return 0;
}
