#include "smash-db/message_tables.h"

namespace smash {
namespace {

constexpr std::array columns = {SMASH_COLUMN(EventMessageRow, description),
                                SMASH_COLUMN(EventMessageRow, messageId)};

} // namespace

constexpr TableOf<EventMessageRow> eventMessageTable{"event_message", columns, 1};

} // namespace smash
