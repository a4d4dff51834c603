#include "smash-db/message_tables.h"

namespace smash {
namespace {

constexpr std::array eventMessageColumns = {SMASH_COLUMN(EventMessageRow, description),
                                            SMASH_COLUMN(EventMessageRow, messageId)};

} // namespace

constexpr TableOf<EventMessageRow> eventMessageTable{"event_message", eventMessageColumns, 1};

} // namespace smash
