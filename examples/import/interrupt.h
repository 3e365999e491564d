#pragma once

// Ctrl-C as a wish to stop: while an object lives, it doesn't end the program.

class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  // Whether Ctrl-C was pressed since the object was made.
  bool IsRequested() const;

 private:
  void (*former_)(int);
};
