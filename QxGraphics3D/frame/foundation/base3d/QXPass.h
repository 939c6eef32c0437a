/// @file
/// One layer of a material.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMaterialExtension.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPassStates.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace QXC {

class QXStream;

/// Which part of the device may draw a pass.
enum QXPassFunctionMode : int {
  PASS_FUNCTION_ANY = 0,    ///< the fixed function, or programs
  PASS_FUNCTION_FIXED = 1,  ///< the fixed function alone: nobody gives the pass programs, so its textures are never
                            ///< folded together with those of others
};

/// Everything a renderer needs to draw a range of triangles once: colours, textures, programs and the states of the
/// device.
/// Ownership: the pass owns its units and its extension. Copies are deep.
/// Threads:   one at a time.
class QXGRAPHICS3D_API QXPass : public QXPassStates {
public:
  QXPass();
  QXPass(QXPass const& other);
  QXPass& operator=(QXPass const& other);
  ~QXPass();

  QdcUnicodeString const& GetName() const { return m_strName; }
  /// The name need not be the key under which the pass is filed.
  void SetName(QdcUnicodeString const& strName);

  /// Appends a unit without a texture.
  /// @return  the unit, owned by the pass and valid until the pass is destroyed, assigned or loaded
  QXTextureUnitState* CreateTextureUnitState();
  /// Null at or past the end.
  QXTextureUnitState* GetTextureUnitState(unsigned int nUnit);
  /// @copydoc GetTextureUnitState(unsigned int)
  QXTextureUnitState const* GetTextureUnitState(unsigned int nUnit) const;
  /// Units created so far. Devices draw 8; a pass made of several others may hold more, which its programs read.
  std::uint64_t GetTextureUnitStatesSize() const { return m_arrUnits.size(); }

  /// A QXPassFunctionMode.
  int GetPFFMode() const { return m_nPFFMode; }
  void SetPFFMode(int nMode) { m_nPFFMode = nMode; }

  /// Replaces the whole pass by what Save wrote.
  /// @param dVersion  of the form; there is one, 1.0, which any value reads. Callers pass 1.0 whatever holds the pass,
  ///                  so that a later form can be told from this one
  /// @return  0 if the stream ended early or makes no sense; the pass is then as it was
  /// Failure: the allocator's exception; memory only as far as the bytes that remain could fill it.
  unsigned char Load(QXStream& stream, double dVersion);
  /// Writes the form 1.0, GetDataSize bytes; dVersion as in Load.
  void Save(QXStream& stream, double dVersion) const;
  /// Bytes that Save writes.
  int GetDataSize() const;

  /// May be null; owned, made with new.
  QXMaterialExtension* m_pExtension = nullptr;
  /// Files of the programs, for the renderer to find; empty: fixed function.
  QdcUnicodeString m_strVertexProgram;
  QdcUnicodeString m_strFragmentProgram;

private:
  void Swap(QXPass& other);
  unsigned char LoadUnits(QXStream& stream);
  unsigned char LoadExtension(QXStream& stream);

  QdcUnicodeString m_strName;
  int m_nPFFMode = PASS_FUNCTION_ANY;
  std::vector<std::unique_ptr<QXTextureUnitState>> m_arrUnits;
};

}  // namespace QXC
