// The machine as a value: its parts, and their text as it stands in the state file.
//
// The text is JSON Lines: a head line, then {"<part>": …} for each part. A line is parsed again only when it
// changed, and written again only when its part was edited.
#pragma once

#include "virtual-bmc/state/parts.h"

#include <array>
#include <bitset>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace vbmc {

class State {
public:
    // `file` is where the state is kept: bulk files lie beside it.
    explicit State(std::filesystem::path file) : file_(std::move(file)) {}

    template <class Part>
    const Part& get() const {
        return std::get<Part>(parts_);
    }
    // Read and edit a part: it will be written.
    template <class Part>
    Part& edit() {
        edited_.set(indexOf<Part>());
        return std::get<Part>(parts_);
    }
    bool isEdited() const { return edited_.any(); }

    const std::filesystem::path& file() const { return file_; }
    std::filesystem::path bulkFile(const char* suffix) const { return file_.string() + suffix; }

    // Reads a model, which is one JSON object with the parts as its members; missing parts have their
    // defaults.
    void loadModel(std::string_view text);
    // Reads a state file's text. Throws Error and stays as it was when something is wrong with it.
    void load(std::string_view text);
    // Returns the text with all edits, which `keep` then makes permanent and `undo` takes back.
    std::string text();
    void keep();
    void undo();

    // Lets the parts catch up with the time.
    void settle();

    nlohmann::ordered_json describe() const;

private:
    static constexpr std::size_t partCount = std::tuple_size_v<Parts>;
    using Lines = std::array<std::string, partCount>;

    template <class Part, std::size_t I = 0>
    static constexpr std::size_t indexOf() {
        if constexpr (std::is_same_v<Part, std::tuple_element_t<I, Parts>>)
            return I;
        else
            return indexOf<Part, I + 1>();
    }

    std::filesystem::path file_;
    Parts parts_;
    Lines lines_;   // of the parts before they were edited; empty: the default
    Lines written_; // by `text`
    std::bitset<partCount> edited_;
};

} // namespace vbmc
