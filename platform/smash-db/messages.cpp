// Numbers of event messages.
#include "smash-db/interface.h"
#include "smash-db/message_tables.h"

#include <platform/smash_db_messages.h>

using namespace smash;

namespace {

Rows<EventMessageRow> find(const SQLite::Database& database, const EventMessageRow& message) {
    auto selection = select(database, eventMessageTable, "WHERE description = ?");
    selection.bind(1, message.description);
    return read(std::move(selection), eventMessageTable);
}

int nextMessageId(const SQLite::Database& database) {
    SQLite::Statement statement(database, "SELECT COALESCE(MAX(messageId), 0) + 1 FROM event_message");
    statement.executeStep();
    return statement.getColumn(0);
}

} // namespace

// Most events are known: they are looked up without a lock on the database.
int db_get_MessageID(SMASH_DB_HANDLE handle, const char* description, int32_t* messageId) {
    return onDatabase(__func__, handle, [&](SQLite::Database& database) {
        require(description != nullptr && messageId != nullptr);
        EventMessageRow message{};
        copyText(message.description, description);
        auto known = find(database, message);
        if (known.count == 0) {
            SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
            known = find(database, message); // another process may have been first
            if (known.count == 0) {
                message.messageId = nextMessageId(database);
                replace(database, eventMessageTable, message);
                transaction.commit();
            }
        }
        *messageId = known.count > 0 ? known.records->messageId : message.messageId;
    });
}
