#include "contenido/ListaDeApps.h"

namespace simulado
{

const std::vector<AppInstalada> &listaDeApps()
{
    static const std::vector<AppInstalada> lista{
        {"net.whatsapp.WhatsApp", "WhatsApp", "24.20.79", false, 214, 1830, 0,
         "Camera Microphone Contacts PhotoLibrary PhotoLibraryAdd Location FaceID Siri", 0, 0, true},
        {"es.bancovalle.movil", "Banco del Valle", "7.14.2", false, 187, 96, 1, "Camera FaceID Location Contacts", 2, 1,
         true},
        {"es.trenesya.app", "Trenes Ya", "5.3.0", false, 92, 41, 12, "Location Calendars Camera", 3, 2, true},
        {"com.fotolienzo.editor", "Fotolienzo", "3.8.1", false, 356, 412, 34, "Camera PhotoLibrary PhotoLibraryAdd", 6,
         3, false},
        {"com.musicaviva.ios", "Música Viva", "9.0.44", false, 168, 2290, 0,
         "AppleMusic Microphone Bluetooth LocalNetwork", 5, 4, false},
        {"org.mapalibre.maps", "MapaLibre", "2024.11.1", false, 143, 1520, 6, "Location Motion", 0, 5, false},
        {"es.cocinafacil.recetas", "Cocina Fácil", "2.1.9", false, 64, 38, 29, "Camera Tracking", 9, 6, false},
        {"com.correoclaro.mail", "Correo Claro", "12.2", false, 121, 640, 0, "Contacts FaceID PhotoLibrary", 1, 7,
         false},
        {"es.caminar.pasos", "Pasos y Más", "4.4.0", false, 58, 73, 2, "Health HealthWrite Motion Location Bluetooth",
         4, 8, false},
        {"com.juegosnube.burbujas", "Burbujas Locas", "1.92.0", false, 412, 188, 181, "Tracking LocalNetwork", 23, 9,
         false},
        {"com.juegosnube.granja", "La Granja de Pepa", "6.0.3", false, 698, 305, 365, "Tracking Camera", 31, 10, false},
        {"es.idiomas.habla", "Habla+", "8.7.1", false, 134, 260, 180, "Microphone SpeechRecognition Tracking", 7, 11,
         false},
        {"com.alquilabici.app", "AlquilaBici", "3.0.0", false, 77, 12, 547, "Location Camera Bluetooth Motion", 2, 12,
         false},
        {"es.teleprograma.tv", "Teleprograma", "5.5.5", false, 109, 830, 730, "LocalNetwork Tracking", 14, 13, false},
        {"com.notarapida.notas", "Nota Rápida ✏️", "1.4", false, 33, 8, -1, "Microphone Camera", 0, 14, false},
        {"com.linternatotal.luz", "Linterna Total", "2.2", false, 19, 1, 900,
         "Camera Location Contacts Microphone Tracking", 18, 15, false},
        {"es.miayuntamiento.citas", "Mi Ayuntamiento", "1.0.8", false, 46, 5, 210, "Calendars FaceID", 0, 16, false},
        {"es.saludcomunidad.tarjeta", "Salud Comunidad", "3.6.2", false, 88, 22, 41, "FaceID Health Camera Calendars",
         0, 17, true},
        {"com.compralia.tienda", "Compralia", "15.9.0", false, 203, 344, 3,
         "Camera Location Microphone Tracking PhotoLibrary", 12, 18, false},
        {"com.vuelobarato.viajes", "Vuelo Barato", "10.1.1", false, 151, 67, 400, "Location Calendars Tracking", 11, 19,
         false},
        {"es.lecturas.ebook", "Lecturas", "6.2.0", false, 97, 512, 95, "LocalNetwork", 1, 20, false},
        {"com.videollamada.gente", "Videollamada Gente", "4.10", false, 176, 31, 59,
         "Camera Microphone Contacts Bluetooth LocalNetwork", 0, 21, false},
        {"es.cole.familias", "El Cole y Familias", "2.8.4", false, 61, 44, 1, "Camera PhotoLibrary Calendars Contacts",
         0, 22, false},
        {"com.casalista.domotica", "Casa Lista", "5.0.2", false, 84, 15, 0,
         "HomeKit LocalNetwork Bluetooth Location NFC", 0, 23, false},
        {"org.podcasts.oreja", "Oreja — pódcasts", "3.3.3", false, 52, 1290, 18, "AppleMusic LocalNetwork", 0, 24,
         false},
        {"com.aparca.ticket", "Aparca", "7.7.0", false, 69, 9, 8, "Location Camera FaceID", 3, 25, false},
        {"com.nombrelargo.aplicacion",
         "Asociación de Amigos de las Aves Migratorias del Delta: Cuaderno de Campo y Observación", "0.9.1", false, 112,
         240, 275, "Location Camera Microphone PhotoLibraryAdd Reminders", 0, 26, false},
        {"es.sinnombre.prueba", "", "0.1", false, 3, 0, -1, "", 0, 27, false},
        {"com.apple.mobilesafari", "Safari", "17.5", true, 41, 310, 0, "", 0, 30, false},
        {"com.apple.MobileSMS", "Mensajes", "17.5", true, 12, 0, 0, "", 0, 31, false},
        {"com.apple.mobileslideshow", "Fotos", "17.5", true, 30, 0, 0, "", 0, 32, false},
        {"com.apple.camera", "Cámara", "17.5", true, 9, 0, -1, "", 0, 33, false},
        {"com.apple.mobilenotes", "Notas", "17.5", true, 22, 14, 0, "", 0, 34, false},
        {"com.apple.mobilecal", "Calendario", "17.5", true, 15, 2, 0, "", 0, 35, false},
        {"com.apple.Health", "Salud", "17.5", true, 27, 120, 1, "", 0, 36, false},
        {"com.apple.Preferences", "Ajustes", "17.5", true, 18, 0, 0, "", 0, 37, false},
        {"com.apple.VoiceMemos", "Notas de Voz", "17.5", true, 11, 63, 20, "Microphone", 0, 38, false}};
    return lista;
}

} // namespace simulado
