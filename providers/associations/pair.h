// Two elements that belong together, and the association between them as CMPI objects.
#pragma once

#include "associations/association.h"
#include "associations/elements.h"

#include <string>

namespace associations {

// An element at one end of a row, ready to be compared with any number at the other.
class Half {
public:
    Half(const Row& row, int end, const CMPIInstance* instance);
    // Tells whether the row is about this element.
    bool isMember() const { return isMember_; }
    bool meets(const CMPIInstance* other) const;

private:
    const Row& row_;
    int end_;
    bool isMember_;
    std::string text_; // of the property that elements meet by
};

// Makes the path of the association, whose keys are both elements. Throws Failure, as the others do.
Owned<CMPIObjectPath> pairPath(const CMPIBroker* broker, const std::string& nameSpace, const Row& row,
                               const CMPIInstance* first, const CMPIInstance* second);
// Makes the association's instance, with those of its own properties that `names` lists; nullptr stands for
// all.
Owned<CMPIInstance> pairInstance(const CMPIBroker* broker, const CMPIObjectPath* path, const Row& row,
                                 const CMPIInstance* first, const CMPIInstance* second, const char** names);

// Makes an element with its keys and those properties that `names` lists; nullptr stands for all.
Owned<CMPIInstance> copyOf(const CMPIBroker* broker, const CMPIInstance* instance, const char** names);

} // namespace associations
