#pragma once

/// Notices that the owner of what a job prints goes, or takes it away, while the job dispatches messages: in
/// its print dialog as well as between its sheets. Jobs within which a host begins another are nested.
class SourceWatch {
 public:
  explicit SourceWatch(const void* owner) : m_owner(owner), m_outer(s_innermost) { s_innermost = this; }
  SourceWatch(const SourceWatch&) = delete;
  SourceWatch& operator=(const SourceWatch&) = delete;
  ~SourceWatch() { s_innermost = m_outer; }

  /// Whether the owner ended while this watch lived.
  bool IsGone() const { return m_owner == nullptr; }
  /// To be called by the owner as it ends; all watches of it learn that.
  static void Gone(const void* owner) {
    for (SourceWatch* watch = s_innermost; watch != nullptr; watch = watch->m_outer)
      if (watch->m_owner == owner) watch->m_owner = nullptr;
  }
  /// Whether the running job's source is gone. Unlike the abort flag it is cleared by nothing.
  static bool IsGoneFromJob() { return s_innermost != nullptr && s_innermost->IsGone(); }

 private:
  const void* m_owner;
  SourceWatch* m_outer;
  static inline SourceWatch* s_innermost = nullptr;
};

/// The same with the owner's type.
template <class Owner>
class JobWatch {
 public:
  explicit JobWatch(Owner& owner) : m_owner(owner), m_watch(&owner) {}

  /// Null: it is gone.
  Owner* Get() const { return m_watch.IsGone() ? nullptr : &m_owner; }
  /// To be called by the owner as it ends.
  static void Gone(const Owner& owner) { SourceWatch::Gone(&owner); }

 private:
  Owner& m_owner;
  SourceWatch m_watch;
};
