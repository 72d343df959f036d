#pragma once

#include "backups/Copias.h"
#include "backups/CopiasAutomaticas.h"
#include "backups/CopiasGuardadas.h"
#include "backups/Devolucion.h"
#include "core/Diario.h"
#include "core/Tarea.h"
#include "extraction/Buscador.h"
#include "extraction/Contactos.h"
#include "extraction/Contrasenas.h"
#include "extraction/Conversaciones.h"
#include "extraction/MisDatos.h"
#include "extraction/TablaDeFichero.h"
#include "extraction/TextoDeFichero.h"
#include "photos/Fotos.h"
#include "photos/SeleccionFotos.h"
#include "services/AvisosPorTelegram.h"
#include "session/BateriaYRed.h"
#include "session/Cerradura.h"
#include "session/Consentimiento.h"
#include "session/Dispositivo.h"
#include "session/Modelo.h"
#include "ui/sesion/VisorDeDatos.h"

#include <qqml.h>

/// Names under which the views know the objects of the program, so that the rooms below need not know of QML.
namespace vellora
{

struct DispositivoParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Dispositivo)
    QML_VALUE_TYPE(dispositivo)
};

struct TareaParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Tarea)
    QML_NAMED_ELEMENT(Tarea)
    QML_UNCREATABLE("The session makes it")
};

struct DiarioParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Diario)
    QML_NAMED_ELEMENT(Diario)
    QML_UNCREATABLE("The session makes it")
};

struct ModeloParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Modelo)
    QML_NAMED_ELEMENT(Modelo)
    QML_UNCREATABLE("The program makes it")
};

struct DatosBateriaParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::DatosBateria)
    QML_VALUE_TYPE(datosBateria)
};

struct BateriaYRedParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::BateriaYRed)
    QML_NAMED_ELEMENT(BateriaYRed)
    QML_UNCREATABLE("The program makes it")
};

struct CopiasAutomaticasParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::CopiasAutomaticas)
    QML_NAMED_ELEMENT(CopiasAutomaticas)
    QML_UNCREATABLE("The program makes it")
};

struct CopiasGuardadasParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::CopiasGuardadas)
    QML_NAMED_ELEMENT(CopiasGuardadas)
    QML_UNCREATABLE("The program makes it")
};

struct CerraduraParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Cerradura)
    QML_NAMED_ELEMENT(Cerradura)
    QML_UNCREATABLE("The program makes it")
};

struct AvisosPorTelegramParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::AvisosPorTelegram)
    QML_NAMED_ELEMENT(AvisosPorTelegram)
    QML_UNCREATABLE("The program makes it")
};

struct CopiasParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Copias)
    QML_NAMED_ELEMENT(Copias)
    QML_UNCREATABLE("The program makes it")
};

struct BuscadorParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Buscador)
    QML_NAMED_ELEMENT(Buscador)
    QML_UNCREATABLE("The program makes it")
};

struct ContactosParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Contactos)
    QML_NAMED_ELEMENT(Contactos)
    QML_UNCREATABLE("The program makes it")
};

struct ContrasenasParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Contrasenas)
    QML_NAMED_ELEMENT(Contrasenas)
    QML_UNCREATABLE("The program makes it")
};

struct ConsentimientoParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Consentimiento)
    QML_NAMED_ELEMENT(Consentimiento)
    QML_UNCREATABLE("The program makes it")
};

struct DevolucionParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Devolucion)
    QML_NAMED_ELEMENT(Devolucion)
    QML_UNCREATABLE("The program makes it")
};

struct FotosParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Fotos)
    QML_NAMED_ELEMENT(Fotos)
    QML_UNCREATABLE("The program makes it")
};

struct SeleccionFotosParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::SeleccionFotos)
    QML_NAMED_ELEMENT(SeleccionFotos)
    QML_UNCREATABLE("The program makes it")
};

struct ConversacionesParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Conversaciones)
    QML_NAMED_ELEMENT(Conversaciones)
    QML_UNCREATABLE("The program makes it")
};

struct MisDatosParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::MisDatos)
    QML_NAMED_ELEMENT(MisDatos)
    QML_UNCREATABLE("The program makes it")
};

struct ModeloDeMensajesParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::ModeloDeMensajes)
    QML_NAMED_ELEMENT(ModeloDeMensajes)
    QML_UNCREATABLE("The program makes it")
};

struct TablaDeFicheroParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::TablaDeFichero)
    QML_NAMED_ELEMENT(TablaDeFichero)
    QML_UNCREATABLE("The program makes it")
};

struct TextoDeFicheroParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::TextoDeFichero)
    QML_NAMED_ELEMENT(TextoDeFichero)
    QML_UNCREATABLE("The program makes it")
};

struct VisorDeDatosParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::VisorDeDatos)
    QML_NAMED_ELEMENT(VisorDeDatos)
    QML_UNCREATABLE("The program makes it")
};

struct ContactoParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Contacto)
    QML_VALUE_TYPE(contacto)
};

} // namespace vellora
