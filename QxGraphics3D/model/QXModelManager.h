/// @file
/// The model cache of a renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QXNameIndex.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>
#include <QxGraphics3D/model/QXModelDataPtr.h>

#include <cstdint>

namespace QXC {

class ModelDataInfo;
class QXModelManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXModelManager>;

/// One shared model for each name or file path, so that a model of ten thousand trees is read once. Each renderer makes
/// an object in its constructor and deletes it in ClearResource; the first one made is registered as the process's own.
///
/// Unlike the other managers this one can go: every destructor clears the registration, whichever object is
/// registered. With two renderers the end of the second therefore unregisters the first one's manager, too.
///
/// There is no limit of memory: a model stays until its key is removed or it is released (QXModelData::Release), and
/// holders keep it alive beyond that. Models may be removed and released in any order, their holders may outlive the
/// manager.
///
/// Failure: a null pointer. Threads: no lock; one at a time for a manager and all pointers to its models.
class QXGRAPHICS3D_API QXModelManager : public QXSingleton<QXModelManager> {
public:
  /// Registers itself if none is registered.
  QXModelManager();
  /// Shares the other's models, which stay the other's: they tell it alone when they are released.
  QXModelManager(QXModelManager const& other);
  QXModelManager& operator=(QXModelManager const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Removes all models and unregisters. Models that are held live on without a manager.
  virtual ~QXModelManager();

  /// The registered manager; makes one if none is registered. No lock.
  static QXModelManager& GetSingleton();
  /// The registered manager, null if none is.
  static QXModelManager* GetSingletonPtr();

  /// The model of that name, else Load. A file that cannot be read is tried again at each call.
  QXModelDataPtr GetModelData(QdcUnicodeString const& strName);
  /// The model of that name, or null. Cost: one hash and one comparison of the name, no allocation.
  QXModelDataPtr GetByFileName(QdcUnicodeString const& strName) const;
  /// Reads the file with the parser of its extension and stores the model under the path, in the place of a former one;
  /// holders of that keep it. Null, and what was there stays, if the extension is unknown, the parser does not make
  /// models, or it cannot read the file. A parser that says it read the file but brings no model makes an entry without
  /// one (QXModelData::GetModelDataInfo is null).
  QXModelDataPtr Load(QdcUnicodeString const& strPath);
  /// Stores a copy of a model under a name, in the place of a former one. The caller's object takes the name too and
  /// stays the caller's. Null for a null info.
  QXModelDataPtr CreateManual(QdcUnicodeString const& strName, ModelDataInfo* pInfo);
  /// 1 if there is a model of that name, be it a released one.
  unsigned char IsExists(QdcUnicodeString const& strName) const;
  /// Removes the key; the model dies with its last holder. An unknown name is ignored.
  void Remove(QdcUnicodeString const& strName);
  void RemoveAll();
  /// Called by a model when it is released: the key of its name goes. A model without an info is ignored.
  void NotifyModelManager(QXModelData* pModelData);

  /// A figure that a host keeps here; nothing in the library counts or limits.
  unsigned int GetMemorySize() const { return m_nMemorySize; }
  unsigned int GetMemoryUsage() const { return m_nMemorySize; }
  void SetMemorySize(unsigned int nSize) { m_nMemorySize = nSize; }

protected:
  /// By file path or given name. A derived class may edit it: the index notices and is built anew at the next look-up.
  QdcDict<QdcUnicodeString, QXModelDataPtr> m_dictModels;
  unsigned int m_nMemorySize = 0;

private:
  friend class QXModelData;
  using Position = QdcDict<QdcUnicodeString, QXModelDataPtr>::Position;

  void Register();
  /// Null if there is none.
  QXModelDataPtr const* FindEntry(QdcUnicodeString const& strName) const;
  void Store(QdcUnicodeString const& strName, QXModelDataPtr const& pModel);
  bool IsIndexed() const { return m_nIndexedChangeCount == m_dictModels.GetChangeCount(); }
  /// Brings the index up to date, with room for so many names. False without memory for it.
  bool UpdateIndex(std::uint64_t nNames) const noexcept;
  void List(QXModelData& model);
  void Unlist(QXModelData& model);

  /// Places of the entries, right while the count below is the dictionary's.
  mutable QXNameIndex<Position> m_Index;
  mutable std::uint64_t m_nIndexedChangeCount = ~std::uint64_t{0};
  /// All models that name this manager, those whose keys are gone included.
  QXModelData* m_pFirstModel = nullptr;
};

}  // namespace QXC
