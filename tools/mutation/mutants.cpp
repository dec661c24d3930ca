// SPDX-License-Identifier: MIT
// Selects the active mutant. If MUTANTS_REACHED in the environment names a file, writes there which mutants each test
// reaches: the test's name and milliseconds, then the numbers of the mutants. A line without a name lists the mutants
// reached outside of tests.
#include "mutants.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace mutants {

namespace {

class Record {
 public:
  Record() {
    if (const char* number = std::getenv("MUTANT")) chosen_ = static_cast<unsigned>(std::atoi(number));
    if (const char* file = std::getenv("MUTANTS_REACHED")) file_ = file;
    if (!file_.empty()) testing::UnitTest::GetInstance()->listeners().Append(new Listener(*this));
  }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record() { write(" 0"); }

  bool active(unsigned number) {
    if (!file_.empty()) {
      if (number >= reached_.size()) reached_.resize(number + 1);
      reached_[number] = true;
    }
    return number == chosen_;
  }

  void write(const std::string& test) {
    if (file_.empty()) return;
    std::ofstream file(file_, std::ios::app);
    file << test;
    for (std::size_t number = 0; number < reached_.size(); ++number) {
      if (reached_[number]) file << ' ' << number;
    }
    file << '\n';
    reached_.assign(reached_.size(), false);
  }

 private:
  class Listener : public testing::EmptyTestEventListener {
   public:
    explicit Listener(Record& record) : record_(record) {}
    void OnTestStart(const testing::TestInfo&) override { record_.write(" 0"); }
    void OnTestEnd(const testing::TestInfo& test) override {
      record_.write(std::string(test.test_suite_name()) + "." + test.name() + " " +
                    std::to_string(test.result()->elapsed_time()));
    }

   private:
    Record& record_;
  };

  unsigned chosen_ = 0;
  std::string file_;
  std::vector<bool> reached_;
};

Record& record() {
  static Record record;
  return record;
}

}  // namespace

bool active(unsigned number) {
  return record().active(number);
}

}  // namespace mutants
