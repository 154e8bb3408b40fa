#include "Platform/Qt/QtUUIDSource.h"

#include <QUuid>

namespace quillmoth::platform {

std::string QtUUIDSource::makeUUID() {
    return QUuid::createUuid().toByteArray(QUuid::WithoutBraces).toUpper().toStdString();
}

} // namespace quillmoth::platform
