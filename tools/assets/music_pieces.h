// The game's four pieces of music: public-domain works held here as note lists.
#pragma once

#include <string>

#include "assets/music_notes.h"

namespace qv::assets {

constexpr int kMusicPieceCount = 4;

// Piece n (1 to 4) of Music\n.wav, checked with CheckPiece.
bool MakeMusicPiece(int number, MusicPiece& piece, std::string& error);

// The music's part of CREDITS.txt, with Windows line ends: each piece and its composer, and the
// licence of the instruments' sounds.
std::string MusicCreditsText();

}  // namespace qv::assets
