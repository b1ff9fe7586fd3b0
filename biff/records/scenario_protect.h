// ScenarioProtect (id 221): 1 when a protected sheet also protects its scenarios.
#ifndef TABRIX_BIFF_RECORDS_SCENARIO_PROTECT_H
#define TABRIX_BIFF_RECORDS_SCENARIO_PROTECT_H

#include "biff/record_ids.h"
#include "biff/records/word_record.h"

namespace tabrix {

class ScenarioProtect : public WordRecord<ScenarioProtect> {
public:
    static constexpr uint16_t kId = rid::ScenarioProtect;
    static constexpr const char *kName = "ScenarioProtect";
    static constexpr const wchar_t *kField = L"fScenProtect";

    uint16_t fScenProtect = 0;

    uint16_t &word() { return fScenProtect; }
    uint16_t word() const { return fScenProtect; }
};

} // namespace tabrix

#endif
