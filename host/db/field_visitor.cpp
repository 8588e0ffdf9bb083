#include "host/db/field_visitor.h"

FieldVisitor::~FieldVisitor() = default;
