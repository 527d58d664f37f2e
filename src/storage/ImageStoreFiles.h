#pragma once

#include "storage/SealedFileStore.h"

namespace vuro {

// The pictures of note bodies: Images/<id>.sealed in the support folder, one per image token.
class ImageStoreFiles : public SealedFileStore {
public:
    ImageStoreFiles(const QString& supportFolder, BodyCipher cipher);
};

}  // namespace vuro
