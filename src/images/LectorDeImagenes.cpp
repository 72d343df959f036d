#include "images/LectorDeImagenes.h"

#include <QImage>

#include <algorithm>
#include <exception>
#include <libffmpegthumbnailer/videothumbnailer.h>
#include <libheif/heif.h>
#include <memory>
#include <mutex>
#include <vector>

namespace
{

template <auto soltar> struct Suelta {
    template <typename Cosa> void operator()(Cosa *cosa) const { soltar(cosa); }
};
using Contexto = std::unique_ptr<heif_context, Suelta<heif_context_free>>;
using Asa = std::unique_ptr<const heif_image_handle, Suelta<heif_image_handle_release>>;
using Descifrada = std::unique_ptr<const heif_image, Suelta<heif_image_release>>;

bool bien(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

Asa principal(heif_context *contexto)
{
    heif_image_handle *asa = nullptr;
    return Asa(bien(heif_context_get_primary_image_handle(contexto, &asa)) ? asa : nullptr);
}

/// The smallest of the pictures kept inside for a first look that is large enough.
Asa paraMirar(const heif_image_handle *entera, int lado)
{
    std::vector<heif_item_id> ids(static_cast<size_t>(heif_image_handle_get_number_of_thumbnails(entera)));
    heif_image_handle_get_list_of_thumbnail_IDs(entera, ids.data(), static_cast<int>(ids.size()));
    Asa mejor;
    const auto largo = [](const Asa &una) {
        return std::max(heif_image_handle_get_width(una.get()), heif_image_handle_get_height(una.get()));
    };
    for (const auto id : ids) {
        heif_image_handle *cruda = nullptr;
        Asa una(bien(heif_image_handle_get_thumbnail(entera, id, &cruda)) ? cruda : nullptr);
        if (una && largo(una) >= lado && (!mejor || largo(una) < largo(mejor)))
            mejor = std::move(una);
    }
    return mejor;
}

QImage descifrar(const heif_image_handle *asa)
{
    heif_image *cruda = nullptr;
    if (!bien(heif_decode_image(asa, &cruda, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr)))
        return {};
    const Descifrada imagen(cruda);
    int paso = 0;
    const auto *bytes = heif_image_get_plane_readonly(imagen.get(), heif_channel_interleaved, &paso);
    if (bytes == nullptr)
        return {};
    // A copy: the decoded one goes with this function.
    return QImage(bytes, heif_image_get_width(imagen.get(), heif_channel_interleaved),
                  heif_image_get_height(imagen.get(), heif_channel_interleaved), paso, QImage::Format_RGBA8888)
        .convertToFormat(QImage::Format_RGB32);
}

QImage encogida(const QImage &imagen, int lado)
{
    return imagen.width() > lado || imagen.height() > lado
               ? imagen.scaled(lado, lado, Qt::KeepAspectRatio, Qt::SmoothTransformation)
               : imagen;
}

QImage deHeic(const char *fichero, int lado)
{
    const Contexto contexto(heif_context_alloc());
    if (!contexto || !bien(heif_context_read_from_file(contexto.get(), fichero, nullptr)))
        return {};
    const auto entera = principal(contexto.get());
    if (!entera)
        return {};
    if (const auto pequena = paraMirar(entera.get(), lado)) {
        if (auto imagen = descifrar(pequena.get()); !imagen.isNull())
            return encogida(imagen, lado);
    }
    return encogida(descifrar(entera.get()), lado);
}

QImage deVideo(const char *fichero, int lado)
{
    std::vector<uint8_t> bytes;
    // The library throws; nothing of that goes further than this.
    try {
        ffmpegthumbnailer::VideoThumbnailer miniador(lado, false, true, 9, false);
        miniador.generateThumbnail(fichero, Jpeg, bytes);
    } catch (const std::exception &) {
        return {};
    }
    return QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

bool vellora_leer_imagen(const char *fichero, int lado, QImage *imagen)
{
    *imagen = deHeic(fichero, lado);
    if (imagen->isNull())
        *imagen = deVideo(fichero, lado);
    return !imagen->isNull();
}
