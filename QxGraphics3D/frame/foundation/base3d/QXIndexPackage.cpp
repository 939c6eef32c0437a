#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXIndexArray.h>

#include <cstring>

namespace QXC {

QXIndexPackage::QXIndexPackage() = default;

// Delegates, so that the destructor runs when the copy throws half-way.
QXIndexPackage::QXIndexPackage(QXIndexPackage const& other) : QXIndexPackage() {
  *this = other;
}

QXIndexPackage& QXIndexPackage::operator=(QXIndexPackage const& other) {
  if (this == &other) return *this;
  m_arrPassNames = other.m_arrPassNames;
  m_bFlag = other.m_bFlag;
  m_eOperationType = other.m_eOperationType;
  Free();
  m_nIndexType = other.m_nIndexType;
  if (!other.m_pIndices) return *this;
  Allocate(other.m_nIndexNum, other.m_nIndexType);
  std::memcpy(m_pIndices, other.m_pIndices, static_cast<std::size_t>(m_nIndexNum) * detail::GetIndexSize(m_nIndexType));
  return *this;
}

QXIndexPackage::~QXIndexPackage() {
  Free();
}

void QXIndexPackage::SetIndexNum(int nNum) {
  Allocate(nNum, 0);
}

void QXIndexPackage::SetIndexNum32(int nNum) {
  Allocate(nNum, 1);
}

unsigned short* QXIndexPackage::GetIndices16() const {
  return m_nIndexType == 1 ? nullptr : static_cast<unsigned short*>(m_pIndices);
}

unsigned int* QXIndexPackage::GetIndices32() const {
  return m_nIndexType == 1 ? static_cast<unsigned int*>(m_pIndices) : nullptr;
}

void QXIndexPackage::Free() {
  detail::FreeIndexArray(m_pIndices, m_nIndexType);
  m_pIndices = nullptr;
  m_nIndexNum = 0;
}

void QXIndexPackage::Allocate(int nNum, int nIndexType) {
  Free();
  m_nIndexType = nIndexType;
  int const num = nNum > 0 ? nNum : 0;
  m_pIndices = detail::NewIndexArray(static_cast<std::size_t>(num), nIndexType);
  m_nIndexNum = num;
}

}  // namespace QXC
