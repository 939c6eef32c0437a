#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXIndexArray.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>

#include <cstring>
#include <new>
#include <utility>

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

unsigned char QXIndexPackage::Load(QXStream& stream, int /*nOption*/) {
  constexpr unsigned int LeastNameSize = 4;
  QXIndexPackage loaded;
  int nNames = 0;
  stream >> loaded.m_eOperationType >> loaded.m_nIndexType >> loaded.m_bFlag;
  if (!detail::LoadCount(stream, nNames, LeastNameSize)) return 0;
  // At its final size at once: growing would hold a second array meanwhile.
  loaded.m_arrPassNames.SetSize(static_cast<std::uint64_t>(nNames));
  for (QdcUnicodeString& strName : loaded.m_arrPassNames) stream >> strName;
  if (!loaded.LoadIndices(stream)) return 0;
  m_arrPassNames = std::move(loaded.m_arrPassNames);
  m_eOperationType = loaded.m_eOperationType;
  m_bFlag = loaded.m_bFlag;
  // The type goes with the array: it says how the array is freed.
  std::swap(m_nIndexType, loaded.m_nIndexType);
  std::swap(m_pIndices, loaded.m_pIndices);
  std::swap(m_nIndexNum, loaded.m_nIndexNum);
  return 1;
}

void QXIndexPackage::Save(QXStream& stream, int /*nOption*/) const {
  int const nNum = GetSavedNum();
  stream << m_eOperationType << m_nIndexType << m_bFlag << static_cast<int>(m_arrPassNames.GetSize());
  for (QdcUnicodeString const& strName : m_arrPassNames) stream << strName;
  stream << nNum;
  if (m_nIndexType == 1)
    stream.Save(static_cast<unsigned int const*>(m_pIndices), static_cast<unsigned int>(nNum));
  else
    stream.Save(static_cast<unsigned short const*>(m_pIndices), static_cast<unsigned int>(nNum));
}

int QXIndexPackage::GetDataSize() const {
  constexpr QXInt64 FixedSize = 4 + 4 + 1 + 4 + 4;
  QXInt64 nSize = FixedSize + GetSavedNum() * static_cast<QXInt64>(detail::GetIndexSize(m_nIndexType));
  for (QdcUnicodeString const& strName : m_arrPassNames) nSize += QXStream::GetStringSize(strName);
  return detail::ToDataSize(nSize);
}

int QXIndexPackage::GetSavedNum() const {
  return m_pIndices && m_nIndexNum > 0 ? m_nIndexNum : 0;
}

/// Into a package without an array. Not zero-filled: every entry is read.
unsigned char QXIndexPackage::LoadIndices(QXStream& stream) {
  int nNum = 0;
  if (!detail::LoadCount(stream, nNum, static_cast<unsigned int>(detail::GetIndexSize(m_nIndexType)))) return 0;
  if (nNum == 0) return 1;
  auto const nCount = static_cast<unsigned int>(nNum);
  if (m_nIndexType == 1) {
    auto* const pIndices = new (std::nothrow) unsigned int[nCount];
    m_pIndices = pIndices;
    if (pIndices) stream.Load(pIndices, nCount);
  } else {
    auto* const pIndices = new (std::nothrow) unsigned short[nCount];
    m_pIndices = pIndices;
    if (pIndices) stream.Load(pIndices, nCount);
  }
  m_nIndexNum = m_pIndices ? nNum : 0;
  return m_pIndices ? stream.IsGood() : 0;
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
