#pragma once

namespace simulado
{

/// Tables with the names and columns that the phone's own databases have (iOS 16 and 17), less their triggers.
extern const char *const esquemaSms;
extern const char *const esquemaWhatsApp;
extern const char *const esquemaNotas;
extern const char *const esquemaCalendario;
extern const char *const esquemaAgenda;
extern const char *const esquemaFotosAgenda;
extern const char *const esquemaFotos;
extern const char *const esquemaFotosAlbumes;

} // namespace simulado
