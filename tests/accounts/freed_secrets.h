// Notices when the library gives memory back with a secret still in it. Link with --wrap=free.
#pragma once

void watchFreedMemory(const char* secret); // NULL ends it
bool secretWasFreed();
