// The text tools. Each member is the body of one command and gives the last status of the host; no state passes from
// one command to the next.
#pragma once

class CVkExtendTextToolCtx {
public:
    CVkExtendTextToolCtx();
    ~CVkExtendTextToolCtx();

    int cmd_CHGTHEI();
    int cmd_CURSTYLE();
    int cmd_TXTULINE();
    int cmd_DELULINE();
    int cmd_TEXTMASK();
    int cmd_TEXTUNMASK();
    int cmd_MATHEI();
    int cmd_MTEXP();
    int cmd_TXTALIGN();
    int cmd_ARCTEXT();
    int cmd_TCASE();
    int cmd_TCOUNT();
    int cmd_TCIRCLE();
    int cmd_TORIENT();
    int cmd_TJUST();
    int cmd_TXT2MTXT();
    int cmd_TEXTFIT();
};
