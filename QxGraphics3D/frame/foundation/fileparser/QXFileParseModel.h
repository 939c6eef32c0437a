/// @file
/// Parser of model files.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParser.h>

namespace QXC {

class ModelDataInfo;

/// Parser whose result is a model. The module of a model reader derives from it and hands its model over with
/// SetModelDataInfo at the end of Open.
class QXGRAPHICS3D_API QXFileParseModel : public QXFileParser {
public:
  QXFileParseModel() = default;
  /// Deletes a model that nobody fetched.
  ~QXFileParseModel() override;

  /// The model that Open read. It passes to the caller, who deletes it: the parser forgets it here and a second
  /// call gives null. Null as well before Open and after a failure.
  ModelDataInfo* GetModelDataInfo();

protected:
  /// Takes the model over; null drops the one held.
  void SetModelDataInfo(ModelDataInfo* pModelDataInfo);

private:
  ModelDataInfo* m_pModelDataInfo = nullptr;
};

}  // namespace QXC
