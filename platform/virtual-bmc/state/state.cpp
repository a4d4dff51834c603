#include "virtual-bmc/state/state.h"

#include "virtual-bmc/state/json_fields.h"

#include <algorithm>
#include <utility>

namespace vbmc {
namespace {

constexpr const char headName[] = "virtualBmcState"; // the head line: {"virtualBmcState": 1, "parts": 7}
constexpr int stateFormatVersion = 1;

template <class Part>
void readPart(const Json& json, Part& part) {
    const Place place{nullptr, Part::name};
    Part fresh;
    if constexpr (requires { fresh.list; }) {
        read(json, place, fresh.list);
        if constexpr (requires { fresh.check(place); })
            fresh.check(place);
    } else {
        read(json, place, fresh);
    }
    part = std::move(fresh);
}

template <class Part>
std::string writePart(Part& part) {
    Json json = Json::object();
    if constexpr (requires { part.list; })
        json[Part::name] = write(part.list);
    else
        json[Part::name] = write(part);
    return json.dump();
}

template <class Visitor>
void forEachPart(Parts& parts, Visitor visit) {
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (visit(I, std::get<I>(parts)), ...);
    }
    (std::make_index_sequence<std::tuple_size_v<Parts>>());
}

Json parse(std::string_view text) {
    try {
        return Json::parse(text);
    } catch (const Json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: …"
        const std::string reason = error.what();
        const auto start = reason.find("] ");
        throw Error(start != std::string::npos ? reason.substr(start + 2) : reason);
    }
}

std::string_view takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    if (end == std::string_view::npos)
        throw Error("its end is missing");
    const auto line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

std::size_t readHead(std::string_view line) {
    const auto head = Json::parse(line, nullptr, false);
    if (!head.is_object() || !head.contains(headName))
        throw Error("it is no state file of a virtual BMC");
    const Place place{nullptr, headName};
    readInteger(head[headName], place, stateFormatVersion, stateFormatVersion);
    if (!head.contains("parts"))
        fail(place, "'parts' is missing");
    return static_cast<std::size_t>(readInteger(head["parts"], Place{&place, "parts"}, 0, 0xFF));
}

// The part that a line holds: {"name": begins it, as no other text can.
bool isLineOf(std::string_view line, std::string_view name) {
    return line.starts_with("{\"") && line.substr(2).starts_with(name) &&
           line.substr(2 + name.size()).starts_with("\":");
}

} // namespace

void State::loadModel(std::string_view text) {
    const Json model = parse(text);
    if (!model.is_object())
        throw Error("a model is an object");
    Parts parts;
    std::vector<std::string_view> names;
    forEachPart(parts, [&](std::size_t, auto& part) {
        names.emplace_back(part.name);
        if (const auto found = model.find(part.name); found != model.end())
            readPart(*found, part);
    });
    for (const auto& [name, value] : model.items())
        if (std::ranges::find(names, name) == names.end())
            throw Error("'" + name + "' is no part of a model");
    parts_ = std::move(parts);
    edited_.set();
}

void State::load(std::string_view text) {
    const std::size_t count = readHead(takeLine(text));
    Lines lines;
    std::size_t found = 0;
    for (; !text.empty(); ++found) {
        const auto line = takeLine(text);
        bool isKnown = false;
        forEachPart(parts_, [&](std::size_t i, auto& part) {
            if (isLineOf(line, part.name)) {
                lines[i] = line;
                isKnown = true;
            }
        });
        if (!isKnown)
            throw Error("line " + std::to_string(found + 2) + ": it is no part of a virtual BMC");
    }
    if (found != count)
        throw Error("it has " + std::to_string(found) + " parts of " + std::to_string(count));

    Parts fresh;
    std::bitset<partCount> changed;
    forEachPart(fresh, [&](std::size_t i, auto& part) {
        changed[i] = edited_[i] || lines[i] != lines_[i];
        if (changed[i] && !lines[i].empty())
            readPart(parse(lines[i])[part.name], part);
    });
    forEachPart(fresh, [&](std::size_t i, auto& part) {
        if (changed[i])
            std::get<std::remove_reference_t<decltype(part)>>(parts_) = std::move(part);
    });
    lines_ = std::move(lines);
    edited_.reset();
}

std::string State::text() {
    Json head = Json::object();
    head[headName] = stateFormatVersion;
    head["parts"] = partCount;
    std::string text = head.dump() + "\n";
    written_ = lines_;
    forEachPart(parts_, [&](std::size_t i, auto& part) {
        if (edited_[i] || written_[i].empty())
            written_[i] = writePart(part);
        text += written_[i];
        text += '\n';
    });
    return text;
}

void State::keep() {
    lines_ = std::move(written_);
    edited_.reset();
}

void State::undo() {
    forEachPart(parts_, [&](std::size_t i, auto& part) {
        if (!edited_[i])
            return;
        part = {};
        if (!lines_[i].empty())
            readPart(parse(lines_[i])[part.name], part);
    });
    edited_.reset();
}

void State::settle() {
    const std::int64_t now = Chassis::now();
    forEachPart(parts_, [&]<class Part>(std::size_t, Part&) {
        if constexpr (requires { Part::settle(*this, now); })
            Part::settle(*this, now);
    });
}

nlohmann::ordered_json State::describe() const {
    Json description = Json::object();
    const auto add = [&](const auto& part) {
        if constexpr (requires { part.describe(*this); })
            if (Json json = part.describe(*this); !json.is_null())
                description[part.name] = std::move(json);
    };
    std::apply([&](const auto&... parts) { (add(parts), ...); }, parts_);
    return description;
}

} // namespace vbmc
