// SPDX-License-Identifier: Apache-2.0
// Pictures as files.
#include "look/Picture.h"

#include <stdexcept>

namespace look {

void Picture::save(Evas* canvas, const Frame& frame, const std::string& file) {
    Evas_Object* image = evas_object_image_add(canvas);
    evas_object_image_size_set(image, frame.width(), frame.height());
    // The toolkit only reads what it is given here.
    evas_object_image_data_copy_set(image, const_cast<Pixel*>(frame.row(0)));
    const bool saved =
        evas_object_image_save(image, file.c_str(), nullptr, "quality=85 compress=6") == EINA_TRUE;
    evas_object_del(image);
    if (!saved) {
        throw std::runtime_error("cannot write " + file);
    }
}

}  // namespace look
