// A small conversion list for tests and fuzzing: definitions and special conversions held
// in memory, values produced for ENTIRE (the whole column) and SET (the constant).
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ascii.h"
#include "import/bna/conversion/conversion_context.h"

namespace nv::bna::testing {

class MemoryDefinitions : public ConversionDefinitions {
 public:
  // An active definition; `constant` is SET's text.
  void Define(std::string name, ConversionMethod method, int column = -1,
              std::string constant = "") {
    FieldDefinition d;
    d.name = std::move(name);
    d.method = method;
    d.column = column;
    d.active = true;
    entries_.push_back({d, std::move(constant)});
  }
  FieldDefinition& Last() { return entries_.back().first; }

  void SetSpecial(std::string_view key, std::string expression) {
    specials_[AsciiUpper(key)] = std::move(expression);
  }
  void SetScheduleName(char letter, std::string name) { schedules_[letter] = std::move(name); }

  std::optional<FieldDefinition> Find(std::string_view name) const override {
    if (const auto* e = Exact(name)) return e->first;
    if (const size_t comma = name.find(','); comma != std::string_view::npos) {
      if (const auto* e = Exact(name.substr(0, comma))) return e->first;
    }
    return std::nullopt;
  }

  std::optional<std::string> ProduceFieldValue(std::string_view name,
                                               std::span<const std::string> columns,
                                               char) override {
    ++produced_;
    std::optional<FieldDefinition> d = Find(name);
    if (!d) return std::nullopt;
    if (d->method == ConversionMethod::kSet) return Constant(*d);
    if (d->method == ConversionMethod::kEntire && d->column >= 0 &&
        static_cast<size_t>(d->column) < columns.size()) {
      return columns[static_cast<size_t>(d->column)];
    }
    return std::nullopt;
  }

  std::string SpecialConversion(std::string_view key) override {
    auto at = specials_.find(AsciiUpper(key));
    return at == specials_.end() ? std::string() : at->second.substr(0, 499);
  }

  std::string ScheduleName(char letter) const override {
    auto at = schedules_.find(letter);
    return at == schedules_.end() ? std::string() : at->second;
  }

  int produced() const { return produced_; }

 private:
  const std::pair<FieldDefinition, std::string>* Exact(std::string_view name) const {
    for (const auto& e : entries_) {
      if (EqualIgnoringCase(e.first.name, name)) return &e;
    }
    return nullptr;
  }
  std::string Constant(const FieldDefinition& d) const {
    const auto* e = Exact(d.name);
    return e ? e->second : std::string();
  }

  std::vector<std::pair<FieldDefinition, std::string>> entries_;
  std::map<std::string, std::string> specials_;
  std::map<char, std::string> schedules_;
  int produced_ = 0;
};

}  // namespace nv::bna::testing
