#pragma once

#include <vector>

/// A list of untyped pointers that grows. It owns nothing. An index has to be one of the list.
class CPtrArray {
 public:
  int GetSize() const { return static_cast<int>(m_entries.size()); }
  /// What is new is null. Not for negative sizes.
  void SetSize(int size) { m_entries.resize(static_cast<std::size_t>(size)); }
  void RemoveAll() { m_entries.clear(); }
  int Add(void* entry) {
    m_entries.push_back(entry);
    return GetSize() - 1;
  }
  void* GetAt(int index) const { return m_entries[static_cast<std::size_t>(index)]; }
  void SetAt(int index, void* entry) { m_entries[static_cast<std::size_t>(index)] = entry; }
  void* operator[](int index) const { return GetAt(index); }
  void*& operator[](int index) { return m_entries[static_cast<std::size_t>(index)]; }

 private:
  std::vector<void*> m_entries;
};
