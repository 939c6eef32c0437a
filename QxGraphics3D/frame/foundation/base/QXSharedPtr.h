/// @file
/// Reference-counted pointer.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// Owns its pointee together with all its copies; the last one frees it.
///
/// The count is a plain heap-allocated word: copies of one pointer belong to one thread, or under the lock of whoever
/// shares them. The pointee may call back into the holder while it dies; the holder is null by then, or holds what it
/// was given.
template <class T>
class QXSharedPtr {
public:
  QXSharedPtr() = default;
  /// Takes pObject over, freeing it if the count cannot be allocated; null gives a null pointer.
  explicit QXSharedPtr(T* pObject) { Bind(pObject); }
  QXSharedPtr(QXSharedPtr const& other) : m_pRep(other.m_pRep), m_pUseCount(other.m_pUseCount) {
    if (m_pUseCount) ++*m_pUseCount;
  }
  QXSharedPtr(QXSharedPtr&& other) noexcept : m_pRep(other.m_pRep), m_pUseCount(other.m_pUseCount) {
    other.m_pRep = nullptr;
    other.m_pUseCount = nullptr;
  }

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXSharedPtr() { Release(); }

  /// Frees the object and its count when the last holder lets go, with this pointer already null. Called on a pointer
  /// that shares its object it only lets go, as SetNull does, since the other holders still use the object. From the
  /// destructor it is this class's own form that runs, as in every destructor. Kept out of line: where several copies
  /// die in one function, g++ 12 would warn of a use after the free that the count rules out.
  [[gnu::noinline]] virtual void Destroy() {
    static_assert(sizeof(T) > 0, "the class of the pointee must be complete, or its destructor would not run");
    T* const pRep = m_pRep;
    unsigned int* const pUseCount = m_pUseCount;
    m_pRep = nullptr;
    m_pUseCount = nullptr;
    if (pUseCount && *pUseCount > 1) {
      --*pUseCount;
      return;
    }
    delete pUseCount;
    delete pRep;
  }

  QXSharedPtr& operator=(QXSharedPtr const& other) {
    QXSharedPtr copy(other);  // counts first: other may live inside the object that is released
    Swap(copy);
    return *this;
  }
  QXSharedPtr& operator=(QXSharedPtr&& other) noexcept {
    QXSharedPtr taken(static_cast<QXSharedPtr&&>(other));
    Swap(taken);
    return *this;
  }

  /// Lets go of what is held and takes pObject over with a count of 1, freeing it if the count cannot be allocated.
  /// The object that is held already stays as it is; null is the same as SetNull.
  void Bind(T* pObject) {
    if (pObject == m_pRep) return;
    unsigned int* pUseCount = nullptr;
    if (pObject) {
      try {
        pUseCount = new unsigned int(1);
      } catch (...) {
        delete pObject;
        throw;
      }
    }
    Release();
    m_pRep = pObject;
    m_pUseCount = pUseCount;
  }
  /// Lets go of what is held.
  void SetNull() { Release(); }

  /// 1 if nothing is held.
  unsigned char IsNull() const { return static_cast<unsigned char>(m_pRep == nullptr); }
  /// Not given away; null if nothing is held.
  T* GetPointer() const { return m_pRep; }
  T* operator->() const { return m_pRep; }
  T& operator*() const { return *m_pRep; }
  /// Pointers that hold the object, this one included; 0 if nothing is held.
  unsigned int UseCount() const { return m_pUseCount ? *m_pUseCount : 0; }

protected:
  /// As Bind, for objects that remember their counter in pRememberedCount: the first pointer bound to such an object
  /// stores it there, and a further one that gets the plain address shares the count instead of starting a second, with
  /// which the object would be freed twice. The object's copies begin without a counter.
  void BindRemembered(T* pObject, unsigned int*& pRememberedCount) {
    if (pObject == m_pRep) return;
    QXSharedPtr taken;
    if (pRememberedCount) {
      taken.m_pRep = pObject;
      taken.m_pUseCount = pRememberedCount;
      ++*pRememberedCount;
    } else {
      taken.Bind(pObject);
      pRememberedCount = taken.m_pUseCount;
    }
    Release();  // after the counter is known: what dies here may get the same plain address and bind it
    Swap(taken);
  }

private:
  void Swap(QXSharedPtr& other) noexcept {
    T* const pRep = m_pRep;
    unsigned int* const pUseCount = m_pUseCount;
    m_pRep = other.m_pRep;
    m_pUseCount = other.m_pUseCount;
    other.m_pRep = pRep;
    other.m_pUseCount = pUseCount;
  }
  void Release() {
    if (m_pUseCount && *m_pUseCount > 1) {
      --*m_pUseCount;
      m_pRep = nullptr;
      m_pUseCount = nullptr;
    } else if (m_pUseCount) {
      Destroy();
    }
  }

  T* m_pRep = nullptr;
  unsigned int* m_pUseCount = nullptr;
};

}  // namespace QXC
