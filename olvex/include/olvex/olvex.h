/* The whole public interface. Types.h opens with the conventions that all of it follows. */
#ifndef OLVEX_OLVEX_H
#define OLVEX_OLVEX_H

#include <olvex/Types.h>

#include <olvex/Catalog.h>
#include <olvex/Chars.h>
#include <olvex/Collections.h>
#include <olvex/Config.h>
#include <olvex/Event.h>
#include <olvex/Ffdc.h>
#include <olvex/File.h>
#include <olvex/Handler.h>
#include <olvex/Level.h>
#include <olvex/Log.h>
#include <olvex/Memory.h>
#include <olvex/Message.h>
#include <olvex/Misc.h>
#include <olvex/MsgId.h>
#include <olvex/Object.h>
#include <olvex/Parm.h>
#include <olvex/Printf.h>
#include <olvex/Process.h>
#include <olvex/PropList.h>
#include <olvex/Props.h>
#include <olvex/StringBuff.h>
#include <olvex/System.h>
#include <olvex/Thread.h>
#include <olvex/Toolkit.h>
#include <olvex/Ucv.h>
#include <olvex/UcvWide.h>

#endif
