#include "conformance_fixture.h"

#include "class_list.h"

namespace {

std::vector<TestedClass> allClasses(bool strictly) {
    std::vector<TestedClass> all;
    for (const ph::ClassFamily* family : ph::allClasses())
        all.push_back({family->name, strictly});
    return all;
}

std::string nameOf(const testing::TestParamInfo<TestedClass>& test) {
    return test.param.name.substr(4);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Classes, Conformance, testing::ValuesIn(allClasses(false)), nameOf);
INSTANTIATE_TEST_SUITE_P(Strictly, Conformance, testing::ValuesIn(allClasses(true)), nameOf);
INSTANTIATE_TEST_SUITE_P(Classes, ConformanceFaults, testing::ValuesIn(allClasses(false)), nameOf);
