// What the shell's functions need on the thread that calls them.
#pragma once

namespace qelcore::host {

/// Makes the calling thread ready for COM while the object lives; a thread that is ready already stays as it
/// is. To be destroyed on the same thread.
class ComApartment {
 public:
  ComApartment() noexcept;
  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  bool mIsEntered;
};

}  // namespace qelcore::host
