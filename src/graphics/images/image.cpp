#include "graphics/images/image.h"

void IMG_init(ImageRecord &record) {
    record = ImageRecord{};
}

void IMG_free(ImageRecord &record) {
    record = ImageRecord{};
}
