// The bytes of a FRU device that a BMC hands out as they are asked for.
#include "smash-db/sync/fru_contents.h"
#include "ipmi/commands.h"
#include "ipmi/message.h"
#include "target.h"

namespace {

class FruBmc final : public ipmi::Transport {
public:
    explicit FruBmc(std::span<const std::uint8_t> contents) : contents_(contents) {}

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        ipmi::Writer writer(answer);
        ipmi::Reader reader(request);
        writer.u8(0);
        if (ipmi::CommandCode{netFn, command} == ipmi::command::getFruInventoryAreaInfo) {
            writer.u16(static_cast<std::uint16_t>(contents_.size())).u8(0);
            return writer.size();
        }
        reader.skip(1);
        const std::size_t offset = std::min<std::size_t>(reader.u16(), contents_.size());
        const auto part =
            contents_.subspan(offset).first(std::min<std::size_t>(reader.u8(), contents_.size() - offset));
        writer.u8(static_cast<std::uint8_t>(part.size())).bytes(part);
        return writer.size();
    }

private:
    std::span<const std::uint8_t> contents_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FruBmc bmc({data, std::min<std::size_t>(size, 0xFFFF)});
    std::vector<smash::SyncRemark> remarks;
    smash::FruDevices(bmc, remarks).read(0);
    return 0;
}
