// The entry points of the text tools.
#include "core/Handlers.h"
#include "text/VkExtendTextToolCtx.h"

void ChgtHei() { CVkExtendTextToolCtx().cmd_CHGTHEI(); }
void CurStyle() { CVkExtendTextToolCtx().cmd_CURSTYLE(); }
void TxtUline() { CVkExtendTextToolCtx().cmd_TXTULINE(); }
void DelUline() { CVkExtendTextToolCtx().cmd_DELULINE(); }
void TextMask() { CVkExtendTextToolCtx().cmd_TEXTMASK(); }
void TextUnMask() { CVkExtendTextToolCtx().cmd_TEXTUNMASK(); }
void MatHei() { CVkExtendTextToolCtx().cmd_MATHEI(); }
void MtExp() { CVkExtendTextToolCtx().cmd_MTEXP(); }
void TxtAlign() { CVkExtendTextToolCtx().cmd_TXTALIGN(); }
void ArcText() { CVkExtendTextToolCtx().cmd_ARCTEXT(); }
void Tcase() { CVkExtendTextToolCtx().cmd_TCASE(); }
void Tcount() { CVkExtendTextToolCtx().cmd_TCOUNT(); }
void Tcircle() { CVkExtendTextToolCtx().cmd_TCIRCLE(); }
void Torient() { CVkExtendTextToolCtx().cmd_TORIENT(); }
void Tjust() { CVkExtendTextToolCtx().cmd_TJUST(); }
void TextToMText() { CVkExtendTextToolCtx().cmd_TXT2MTXT(); }
// The name and the body differ on purpose.
void TextEdit() { CVkExtendTextToolCtx().cmd_TEXTFIT(); }
