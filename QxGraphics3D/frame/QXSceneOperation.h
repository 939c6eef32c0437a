/// @file
/// Scene numbering of one renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// How a scene node's name is hashed by the plug-in. Any other value survives.
enum HashFunction : unsigned int {
  HASH_DEFAULT = 0,
  HASH_BY_NAME = 1,
};

/// Scene numbering of one renderer: render group and priorities, the hash function in use, and how a 32-bit
/// selection identifier is divided between a layer number (top bits) and an object number (the rest).
class QXGRAPHICS3D_API QXSceneOperation {
public:
  QXSceneOperation();
  QXSceneOperation(QXSceneOperation const& other);
  QXSceneOperation& operator=(QXSceneOperation const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXSceneOperation();

  /// Render group 50, priority 0, hash function 0, no parent node. The maximum priority, the layer bits and the
  /// counter of GetClampToObjectPassPriority keep their values.
  void SetDefault();

  // Each of these setters gives the former value, so that a caller can restore it.

  unsigned int GetRenderGroupID() const;
  unsigned int SetRenderGroupID(unsigned int nRenderGroupID);
  unsigned short GetRenderPriority() const;
  unsigned short SetRenderPriority(unsigned short nPriority);
  unsigned short GetMaxRenderPriority() const;
  unsigned short SetMaxRenderPriority(unsigned short nPriority);
  unsigned int GetHashFunction() const;
  unsigned int SetHashFunction(HashFunction eFunction);
  QdcUnicodeString const& GetParentNodeName() const;
  QdcUnicodeString SetParentNodeName(QdcUnicodeString const& strName);

  /// Bits of an identifier that the layer number takes, 8 at start.
  int GetLayerIDUnit() const;
  /// Anything below 2 becomes 1.
  void SetLayerIDUnit(int nBits);
  /// The next priority of a pass that is clamped to objects: every call gives one more, from 0.
  int GetClampToObjectPassPriority();

  /// Packs a layer and an object number: (nID AND (2^s - 1)) OR (nLayer shifted left by s), s = 32 - layer bits.
  unsigned int GetID(int nLayer, int nID) const;
  /// Takes an identifier apart again.
  void GetID(unsigned int nValue, int& nLayer, int& nID) const;
  /// Takes a read-back pixel apart: bytes red, green, blue, alpha, with the top bits in alpha and then red, green
  /// and blue in falling order.
  void GetID(unsigned char* pRGBA, int& nLayer, int& nID) const;

  /// No effect: the numbering holds nothing to free.
  void Release();

private:
  unsigned int m_nRenderGroupID = 50;
  unsigned short m_nRenderPriority = 0;
  unsigned short m_nMaxRenderPriority = 0;
  unsigned int m_nHashFunction = 0;
  QdcUnicodeString m_strParentNodeName;
  int m_nClampToObjectPassPriority = 0;
  int m_nLayerIDUnit = 8;
};

}  // namespace QXC
