#include "Utility/engine/record_array.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace ph {

void cleanRecord(std::span<const Property> properties, void* record) {
    for (const Property& property : properties) {
        if (property.kind != Kind::StringList || property.compute != nullptr)
            continue;
        char** texts = reinterpret_cast<char**>(static_cast<char*>(record) + property.offset);
        for (; *texts != nullptr; ++texts) {
            explicit_bzero(*texts, std::strlen(*texts)); // it may be a password
            std::free(*texts);
            *texts = nullptr;
        }
    }
}

RecordStore::RecordStore(void* records, int count, std::size_t recordSize,
                         std::span<const Property> properties)
    : records_(static_cast<char*>(records)),
      count_(records != nullptr ? std::max(count, 0) : 0),
      kept_(count_),
      capacity_(count_),
      recordSize_(recordSize),
      properties_(properties) {}

RecordStore::~RecordStore() {
    truncate(0);
    std::free(records_);
}

void* RecordStore::append() {
    if (count_ == capacity_) {
        if (capacity_ > INT_MAX / 2)
            return nullptr;
        const int capacity = capacity_ == 0 ? 1 : capacity_ * 2;
        void* grown = std::realloc(records_, static_cast<std::size_t>(capacity) * recordSize_);
        if (grown == nullptr)
            return nullptr;
        records_ = static_cast<char*>(grown);
        capacity_ = capacity;
    }
    void* record = at(count_++);
    std::memset(record, 0, recordSize_);
    return record;
}

void RecordStore::removeLast() {
    if (count_ > kept_)
        truncate(count_ - 1);
}

void RecordStore::keepOnly(int index) {
    if (index != kept_) {
        cleanRecord(properties_, at(kept_));
        std::memcpy(at(kept_), at(index), recordSize_);
        std::memset(at(index), 0, recordSize_);
    }
    truncate(kept_ + 1);
}

void* RecordStore::release() {
    truncate(kept_);
    if (count_ == 0) {
        std::free(records_);
        records_ = nullptr;
    }
    count_ = kept_ = capacity_ = 0;
    return std::exchange(records_, nullptr);
}

void RecordStore::truncate(int count) {
    while (count_ > count)
        cleanRecord(properties_, at(--count_));
}

} // namespace ph
