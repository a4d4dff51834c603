// Makes a malloc, calloc, realloc or strndup of the program's own objects fail. Link with
// ph_test_failing_allocation, which redirects their calls; those of shared libraries and operator new stay.
#pragma once

// The nth allocation from now on fails; 0: none does.
void failAllocation(unsigned nth);
// Whether the one that was to fail has been reached.
bool allocationFailed();
