# Gives the paragraphs of comments that begin with one of these words a heading in the documentation site.
# The lines stay as many as they are (that is what \ilinebr is for), so that warnings name the right one.
s,^( *///) ((Ownership|Threads|Errors|ABI|Nesting|Cost|Shape|Elements|Descriptors|Reading|Removing columns)( and threads|\, threads)?): ,\1 @par \2 \\ilinebr ,
# Gives the section below a line `<!-- #ID -->` of a page the name by which `[text](#ID)` links to it. It is
# the one that GitHub makes of the title.
s,^<!-- #([a-z0-9-]+) -->$,\\anchor \1,
