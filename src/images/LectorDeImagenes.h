#pragma once

class QImage;

/// The one door of the part `libvellora_imagenes.so`, which is loaded when a picture needs it: the libraries that it
/// brings take several times as long to load as the whole engine.
extern "C" {

/// Reads a HEIC picture or a video into `imagen`, to fit in a square of `lado` points. False when it is neither, or
/// damaged. Any thread.
using LeerImagen = bool (*)(const char *fichero, int lado, QImage *imagen);
bool vellora_leer_imagen(const char *fichero, int lado, QImage *imagen);
}
