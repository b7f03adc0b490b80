#include "store/company_record.h"

namespace nv {

const ScheduleEntry* NvCompanyRecord::FindSchedule(char letter) const {
  for (const ScheduleEntry& entry : schedules) {
    if (entry.letter == letter) return &entry;
  }
  return nullptr;
}

}  // namespace nv
