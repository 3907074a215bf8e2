#pragma once

namespace bench {

// The keys of the terminal at standard input, each available as soon as it is pressed. There are none if
// standard input is no terminal, or if this process is in its background.
//
// The destructor restores the terminal's mode. So do signals that end or stop the process, except SIGKILL and
// SIGSTOP; after a stop the keys are available again. At most one keyboard may exist.
class Keyboard {
 public:
  Keyboard();
  ~Keyboard();
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  bool IsThere() const { return isThere_; }
  // The next key that was pressed; 0 if there is none. Does not wait.
  char NextKey() const;

 private:
  bool isThere_ = false;
};

}  // namespace bench
