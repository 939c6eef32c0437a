/// @file
/// Numbers of everything in a scene that a person may point at.
#pragma once

#include <QxGraphics3D/frame/QXSceneOperation.h>

#include <functional>
#include <map>
#include <string>

namespace QXApp {

/// What a thing is; each kind has layers of its own.
enum class QXPickKind { Model, Static, Instance, Icon, Label, Ground };

/// Something that was pointed at.
struct QXPickedThing {
  QXPickKind m_eKind = QXPickKind::Model;
  int m_nLayer = 0;
  int m_nObject = 0;
  /// Among those that were numbered together, from 0.
  unsigned int m_nIndex = 0;
  /// One line.
  std::string m_strText;
};

/// Hands out the identifiers that go to SetSelectionID, and tells what they mean. Identifiers are those of a renderer
/// that divides them in the usual way, 8 bits for the layer.
class QXPickTable {
public:
  /// Says what a thing is, by its place among those that were numbered together.
  using Describe = std::function<std::string(unsigned int)>;

  /// Takes numbers that follow each other. A kind begins with a layer of its own, and takes further ones when that is
  /// full.
  /// @return  the first identifier; 0, which cannot be picked, where there are no more
  unsigned int Take(QXPickKind eKind, unsigned int nCount, Describe describe);
  /// @return  false for an identifier that was not handed out
  bool Find(unsigned int nID, QXPickedThing& thing) const;

  /// As it is printed.
  static char const* GetKindName(QXPickKind eKind);

private:
  struct Run {
    QXPickKind m_eKind;
    unsigned int m_nCount;
    Describe m_describe;
  };
  struct Layer {
    int m_nLayer = 0;
    unsigned int m_nNext = 0;
  };

  QXC::QXSceneOperation m_Numbering;
  std::map<QXPickKind, Layer> m_mapLayers;
  /// By the first identifier of each.
  std::map<unsigned int, Run> m_mapRuns;
  int m_nLastLayer = 0;
};

}  // namespace QXApp
