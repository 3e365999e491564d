#pragma once

// Catches what the library shows to the user while an object of it lives; one at a time, on one thread.

#include <string>
#include <vector>

#include "qorgen/afx/message_box.h"

#include "tests/support/text.h"

namespace qorgen::tests {

class MessageBoxRecorder {
 public:
  struct Shown {
    std::string text;
    unsigned int type;
    unsigned int help_context;
  };

  // Every box is answered with `answer`.
  explicit MessageBoxRecorder(int answer) {
    shown_.clear();
    answer_ = answer;
    former_ = QorSetMessageBoxHandler(&Record);
  }
  ~MessageBoxRecorder() { QorSetMessageBoxHandler(former_); }
  MessageBoxRecorder(const MessageBoxRecorder&) = delete;
  MessageBoxRecorder& operator=(const MessageBoxRecorder&) = delete;

  const std::vector<Shown>& shown() const { return shown_; }
  std::string last_text() const { return shown_.empty() ? "(nothing shown)" : shown_.back().text; }

 private:
  static int Record(const wchar_t* text, unsigned int type, unsigned int help_context) {
    shown_.push_back({Utf8(text), type, help_context});
    return answer_;
  }

  static inline std::vector<Shown> shown_;
  static inline int answer_ = 0;
  QorMessageBoxHandler former_;
};

}  // namespace qorgen::tests
