// Which instances the words of a command line mean.
#pragma once

#include "requests.h"

#include <optional>
#include <string>
#include <vector>

namespace phctl {

// One of
//   - an object path; where it leaves keys out, or a key has a * or ?, the instances that it fits;
//   - a class and a name: the instances of which a key or ElementName is the name, or fits its * and ?;
//   - a class alone: all its instances;
//   - "-": the object paths on the lines of standard input.
struct Target {
    std::string text;
    std::string name; // empty: none was given

    // Adds PATH to a command, and NAME unless the words after PATH may be others.
    void addTo(Command command, bool withName = true);
    // Tells whether the text is a class, after which a name may follow.
    bool isClass() const;
    bool isInput() const { return text == "-"; }
    // Tells whether more than one instance may be meant.
    bool meansSeveral() const;
};

// Finds the paths of the instances that are meant, at least one. Throws UsageError and Failure.
std::vector<broker::ObjectPath> select(Requester& requester, const Target& target,
                                       const std::string& nameSpace);
// The same for a command that works on one instance. Throws Failure when several are meant.
broker::ObjectPath selectOne(Requester& requester, const Target& target, const std::string& nameSpace);

} // namespace phctl
