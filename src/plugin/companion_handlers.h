// The handlers of the companion's commands, by what they serve.
#pragma once

#include "dispatch/handler.h"

namespace vernoxa {

// view_handlers.cpp: pages, drawings, ports
Outcome getActiveProPages(const Request&, HandlerContext&);
Outcome setPlacePortType(const Request&, HandlerContext&);
Outcome setPlaceOffpageType(const Request&, HandlerContext&);
Outcome createSvg(const Request&, HandlerContext&);

// reference_handlers.cpp: reference designators, values and jumps
Outcome adjustRefAndValue(const Request&, HandlerContext&);
Outcome renameRef(const Request&, HandlerContext&);
Outcome jumpToDsn(const Request&, HandlerContext&);
Outcome jumpToPartRef(const Request&, HandlerContext&);

// report_handlers.cpp: reports that the host sends as messages of their own
Outcome getOlbObjectPackageInfo(const Request&, HandlerContext&);
Outcome getDsnAllPackageInfo(const Request&, HandlerContext&);
Outcome getOlbAllPackageInfo(const Request&, HandlerContext&);
Outcome dsnCheck(const Request&, HandlerContext&);
Outcome dsnCheckActiveProj(const Request&, HandlerContext&);

// bom_handlers.cpp: the bill of materials and its view
Outcome generateBom(const Request&, HandlerContext&);
Outcome switchStickOrNotStick(const Request&, HandlerContext&);
Outcome setToNotStick(const Request&, HandlerContext&);
Outcome setToStick(const Request&, HandlerContext&);
Outcome exitBomViewMode(const Request&, HandlerContext&);
Outcome enterBomViewMode(const Request&, HandlerContext&);

// design_handlers.cpp: design files and what belongs to a whole design
Outcome autoDealwithDsn(const Request&, HandlerContext&);
Outcome selectModule(const Request&, HandlerContext&);
Outcome clearCurrentDesign(const Request&, HandlerContext&);
Outcome checkOpenState(const Request&, HandlerContext&);
Outcome cancel(const Request&, HandlerContext&);
Outcome getPartPropertyList(const Request&, HandlerContext&);
Outcome setNewGuid(const Request&, HandlerContext&);
Outcome closeOrcad(const Request&, HandlerContext&);

}  // namespace vernoxa
