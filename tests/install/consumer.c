/* Uses the installed headers from C and runs code of the installed library. */
#include <provider_helper/provider_helper.h>

int main(void) {
    const char* names[] = {"Name", "ElementName", NULL};
    return ExistsInList(names, "elementname") == 1 && ExistsInList(names, "Caption") == 0 ? 0 : 1;
}
