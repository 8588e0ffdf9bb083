// Silence around host commands that are driven: CMDECHO, BLIPMODE and EXPERT are 0 for its life.
#pragma once

class EchoBracket {
public:
    EchoBracket();
    EchoBracket(const EchoBracket&) = delete;
    EchoBracket& operator=(const EchoBracket&) = delete;
    ~EchoBracket();

private:
    short m_saved[3] = {};
};
