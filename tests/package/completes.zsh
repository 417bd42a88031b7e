# Types LINE and a tab into an interactive zsh with completion switched on, and waits until it shows EXPECTED;
# for ever if it does not. Usage: timeout 60 zsh -f completes.zsh LINE EXPECTED
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PS1=; autoload -Uz compinit; compinit -u -D; echo REA''DY"
zpty -r shell shown '*READY*'
zpty -n -w shell "$1"$'\t'
zpty -r shell shown "*$2*"
print -r -- "$1 completes to $2"
