/// @file
/// Every public header of the library. Convenient for a first program; larger ones include what they use,
/// which compiles faster. The null and recording renderers of testing/ are a library of their own.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/Version.h>

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QDCCharset.h>
#include <QxGraphics3D/frame/foundation/base/QXNameIndex.h>
#include <QxGraphics3D/frame/foundation/base/QXSharedPtr.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcByteOrder.h>
#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcList.h>
#include <QxGraphics3D/frame/foundation/base/QdcMBString.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/base/QdcPoint.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXAnimationKey.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMaterialExtension.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOrientedBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPassStates.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexAttribute.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDeclaration.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXHash.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXLogFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextCodec.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>

#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>
#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParams.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParser.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileTypeRow.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelNode.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelTexture.h>

#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <QxGraphics3D/view/QXBloomSetting.h>
#include <QxGraphics3D/view/QXCamera.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXFrustum.h>
#include <QxGraphics3D/view/QXLight.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXGraphics3DCapabilities.h>
#include <QxGraphics3D/frame/QXPluginConfig.h>
#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/QXPluginDefine.h>
#include <QxGraphics3D/frame/QXPluginImageOperator.h>
#include <QxGraphics3D/frame/QXPluginInterface.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXRenderTargetListener.h>
#include <QxGraphics3D/frame/QXResourceHolder.h>
#include <QxGraphics3D/frame/QXSceneOperation.h>
#include <QxGraphics3D/frame/QXUniformBuffer.h>
#include <QxGraphics3D/frame/QXViewport.h>

#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>
#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/renderop/QXBoneKey.h>
#include <QxGraphics3D/renderop/QXIndexBlock.h>
#include <QxGraphics3D/renderop/QXParticleSystem3D.h>
#include <QxGraphics3D/renderop/QXQueryOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationBase.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/renderop/QXRenderOperationSet.h>
#include <QxGraphics3D/renderop/QXRenderOperationType.h>
#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>
#include <QxGraphics3D/renderop/TextureVertex.h>

#include <QxGraphics3D/texture/QXAnimationTexture.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>
#include <QxGraphics3D/texture/QXStyleTextureManager.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureCacheMap.h>
#include <QxGraphics3D/texture/QXTextureManager.h>
#include <QxGraphics3D/texture/QXTextureMemory.h>
#include <QxGraphics3D/texture/QXTextureMemoryManager.h>

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/atlas/QXTextureImage.h>
#include <QxGraphics3D/atlas/QXTextureImageEx.h>
#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXFontKey.h>
#include <QxGraphics3D/text/QXFontTextureKey.h>
#include <QxGraphics3D/text/QXMemoryTextureFontManager.h>
#include <QxGraphics3D/text/QXTextLayout.h>
#include <QxGraphics3D/text/QXTextureFont.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <QxGraphics3D/staticgeometry/QXBucketIndexPackage.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>

#include <QxGraphics3D/model/QXGeometryInstanceManager.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/model/QXModelData.h>
#include <QxGraphics3D/model/QXModelDataPtr.h>
#include <QxGraphics3D/model/QXModelManager.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>
#include <QxGraphics3D/model/QXRenderOperationInstance.h>

#include <QxGraphics3D/environment/QXOceanParameters.h>
#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXSunPosition.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>
#include <QxGraphics3D/environment/QXVirtualReality.h>
