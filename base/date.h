// Calendar dates as the layouts keep them: month, day and year as three integers, with
// 0/0/0 as the empty date.
#pragma once

namespace nv {

struct Date {
  int month = 0;
  int day = 0;
  int year = 0;

  bool empty() const { return month == 0 && day == 0 && year == 0; }
  friend bool operator==(const Date&, const Date&) = default;
};

}  // namespace nv
