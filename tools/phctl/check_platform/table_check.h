// How the rows of a table of the database are checked.
#pragma once

#include "check_platform/probe.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <malloc.h>
#include <memory>
#include <platform/smash_db.h>
#include <set>
#include <span>

namespace phctl::check {

struct TextField {
    const char* name;
    std::size_t offset;
    std::size_t size;
};
#define PH_TEXT(Row, member)                                                                                 \
    TextField {                                                                                              \
#member, offsetof(Row, member), sizeof(std::declval <Row>().member)                                  \
    }

// The texts of a row; the first identifies it, if it has one.
template <class Row>
inline constexpr std::span<const TextField> textsOf{};

// What the records of all sensors have.
inline const CompactSdr& commonOf(const CompactSdr& row) {
    return row;
}
inline const CompactSdr& commonOf(const FullSdr& row) {
    return row.common;
}

template <class Row>
std::string textOf(const Row& row, const TextField& field) {
    const char* const text = reinterpret_cast<const char*>(&row) + field.offset;
    return {text, strnlen(text, field.size)};
}

template <class Row>
void judgeTexts(Call& call, const Row& row) {
    for (const TextField& field : textsOf<Row>)
        call.addFault(
            faultOfText(field.name, {reinterpret_cast<const char*>(&row) + field.offset, field.size}));
}

// A call that fails hands out nothing, one that succeeds a block that free() takes.
template <class Row>
std::unique_ptr<Row, void (*)(void*)> owned(Call& call, Out<Row*>& rows, std::size_t count) {
    const auto release = [](void* block) { std::free(block); };
    if (!call) {
        call.expect(!call.isMade() || rows.isUntouched() || *rows == nullptr, "it fails and hands out rows");
        return {nullptr, release};
    }
    if (*rows != nullptr) {
        call.enter("what it handed out, which is to be a block of the heap");
        if (malloc_usable_size(*rows) < count * sizeof(Row)) {
            call.addFault("the block is smaller than its rows");
            std::free(*rows);
            return {nullptr, release};
        }
    }
    return {*rows, release};
}

template <class Row>
using Judge = std::function<void(Call&, const Row&)>;

// db_get_all_…(handle, rows, count)
template <class Row>
void checkAll(Probe& probe, const Judge<Row>& judge = nullptr, const char* opener = "db_init") {
    constexpr int most = 100'000;
    Out<Row*> rows("the rows");
    Out<int> count("the count");
    auto call = probe.call<int(SMASH_DB_HANDLE, Row**, int*)>("", probe.database(opener), rows, count);
    const bool isSane = call && *count >= 0 && *count <= most;
    call.expect(!call || isSane, "the count is no number of rows");
    const auto owner = owned(call, rows, isSane ? static_cast<std::size_t>(*count) : 0);
    if (!isSane)
        return;
    call.expect((*rows == nullptr) == (*count == 0), "NULL and 0 do not come together");
    std::set<std::string> keys;
    for (const Row& row : std::span(owner.get(), owner != nullptr ? static_cast<std::size_t>(*count) : 0)) {
        judgeTexts(call, row);
        if (!textsOf<Row>.empty())
            call.expect(keys.insert(textOf(row, textsOf<Row>[0])).second,
                        std::string("two rows have the same ") + textsOf<Row>[0].name);
        if (judge)
            judge(call, row);
    }
    call.remark(std::to_string(*count) + " rows");
    call.enter("free() of what it handed out");
}

// All rows, for another check.
template <class Row>
std::vector<Row> rowsOf(Probe& probe, const char* getter, const char* opener = "db_init") {
    Row* rows = nullptr;
    int count = 0;
    probe.use<int(SMASH_DB_HANDLE, Row**, int*)>(getter, probe.database(opener), &rows, &count);
    std::vector<Row> copied(rows, rows + std::max(count, 0));
    std::free(rows);
    return copied;
}

// db_get_…(handle, key, row): the row of each key that `all` lists, and none of another.
template <class Row>
void checkOne(Probe& probe, const char* all, const char* opener = "db_init") {
    for (const Row& listed : rowsOf<Row>(probe, all, opener)) {
        const std::string key = textOf(listed, textsOf<Row>[0]);
        Out<Row*> row("the row");
        auto call = probe.call<int(SMASH_DB_HANDLE, const char*, Row**)>(key, probe.database(opener),
                                                                         key.c_str(), row);
        const auto owner = owned(call, row, 1);
        call.expect(!call || owner != nullptr, "it succeeds without a row");
        if (owner == nullptr)
            continue;
        for (const TextField& field : textsOf<Row>)
            call.expect(textOf(*owner, field) == textOf(listed, field),
                        std::string(field.name) + " is another than in the list");
        call.enter("free() of what it handed out");
    }
    Out<Row*> row("the row");
    auto call = probe.call<int(SMASH_DB_HANDLE, const char*, Row**)>(
        "a key that no row has", probe.database(opener), "phctl checks this", row);
    call.expectFailure("a key that no row has");
    owned(call, row, 1);
}

// A row that is asked for by numbers, and may be none.
template <class Row, class Function, class... Keys>
void checkByNumbers(Probe& probe, const std::string& words, const Judge<Row>& judge, Keys... keys) {
    Out<Row*> row("the row");
    auto call = probe.call<Function>(words, probe.database(), keys..., row);
    const auto owner = owned(call, row, 1);
    if (owner == nullptr)
        return;
    judgeTexts(call, *owner);
    if (judge)
        judge(call, *owner);
    explicit_bzero(owner.get(), sizeof(Row)); // one has a password
    call.enter("free() of what it handed out");
}

} // namespace phctl::check
