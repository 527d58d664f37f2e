#include "storage/ImageStoreFiles.h"

namespace vuro {

ImageStoreFiles::ImageStoreFiles(const QString& supportFolder, BodyCipher cipher)
    : SealedFileStore(supportFolder + QStringLiteral("/Images"), std::move(cipher)) {}

}  // namespace vuro
