/// @file
/// One model of the cache.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

class ModelDataInfo;
class QXModelManager;

/// A parsed model, owned, and the cache that it belongs to. Held through QXModelDataPtr.
///
/// The cache knows its models by their names: when one is released, the key of that name leaves the cache, whatever it
/// holds meanwhile. A holder that lets go of an old model late therefore takes a newer one of the same name out.
/// Threads: those of the cache, one at a time.
class QXGRAPHICS3D_API QXModelData {
public:
  /// Without model and cache.
  QXModelData();
  /// @param pModelManager   the cache that is told of the release; null for none
  /// @param pModelDataInfo  taken over; may be null
  QXModelData(QXModelManager* pModelManager, ModelDataInfo* pModelDataInfo);
  /// A model of its own, that of the same cache, which knows nothing of it.
  QXModelData(QXModelData const& other);
  /// Copies the other's model into the model that is here, or into a new one if there is none; nothing is copied where
  /// the other has none. The cache becomes the other's.
  QXModelData& operator=(QXModelData const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Releases.
  virtual ~QXModelData();

  /// Null if there is none, or after Release. Stays the object's.
  ModelDataInfo* GetModelDataInfo() const { return m_pModelDataInfo; }
  /// Deletes the model held and takes the new one over; the one held already stays.
  void SetModelDataInfo(ModelDataInfo* pModelDataInfo);
  /// Null if there is none, or after it has died.
  QXModelManager* GetModelManager() const { return m_pModelManager; }
  /// Tells the cache, which forgets the name of the model, and deletes the model. The object stays, empty, for those
  /// who hold it; where nobody but the cache does, it is gone afterwards.
  void Release();

protected:
  ModelDataInfo* m_pModelDataInfo = nullptr;
  QXModelManager* m_pModelManager = nullptr;

private:
  friend class QXModelDataPtr;
  friend class QXModelManager;

  void SetModelManager(QXModelManager* pModelManager);
  void CopyInfo(QXModelData const& other);

  /// Counter of the pointers that hold the object, for one bound to its plain address. Null before the first.
  unsigned int* m_pUseCount = nullptr;
  /// The cache in whose list of models the object stands: m_pModelManager, unless a derived class has set that by hand.
  QXModelManager* m_pListedIn = nullptr;
  /// Its neighbours in that list.
  QXModelData* m_pPrevious = nullptr;
  QXModelData* m_pNext = nullptr;
};

}  // namespace QXC
